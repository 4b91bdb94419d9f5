// loudness_alone IMAGE: what the library by itself takes for the loudness and true peak of an
// image, beside which the making of a page is measured.

#include <ebur128.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <vector>

int main(int argc, char** argv) {
  constexpr size_t kFramesAtOnce = 44100;
  std::ifstream image(argc == 2 ? argv[1] : "", std::ios::binary);
  ebur128_state* state = ebur128_init(2, 44100, EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK);
  if (!image || !state) {
    fputs("usage: loudness_alone IMAGE, of 16-bit stereo at 44100 Hz\n", stderr);
    return 2;
  }
  std::vector<int16_t> samples(kFramesAtOnce * 2);
  while (image) {
    image.read(reinterpret_cast<char*>(samples.data()),
               static_cast<std::streamsize>(samples.size() * sizeof(int16_t)));
    ebur128_add_frames_short(state, samples.data(), static_cast<size_t>(image.gcount()) / 4);
  }
  double lufs = 0.0, left = 0.0, right = 0.0;
  ebur128_loudness_global(state, &lufs);
  ebur128_true_peak(state, 0, &left);
  ebur128_true_peak(state, 1, &right);
  printf("%.2f LUFS, true peaks %.4f and %.4f\n", lufs, left, right);
  ebur128_destroy(&state);
  return 0;
}
