// Both channels of plain stereo at once, where the processor has AVX2. The functions that need it
// name their target themselves, so that the program still runs on processors without it.
#include <immintrin.h>

#include "host/render/input/formats/plain_pcm.h"

namespace velmor::render {
namespace {

/// For each byte of the result the byte that it comes from, of 16 bytes that begin with two frames:
/// two samples of the left channel, then two of the right one, each in the upper bytes of 32 bits.
/// Where there is nothing to take, -1 makes a zero.
[[gnu::target("avx2")]] __m128i bytesOfTwoFrames(size_t sample_bytes) {
  switch (sample_bytes) {
    case 2:
      return _mm_setr_epi8(-1, -1, 0, 1, -1, -1, 4, 5, -1, -1, 2, 3, -1, -1, 6, 7);
    case 3:
      return _mm_setr_epi8(-1, 0, 1, 2, -1, 6, 7, 8, -1, 3, 4, 5, -1, 9, 10, 11);
    default:
      return _mm_setr_epi8(0, 1, 2, 3, 8, 9, 10, 11, 4, 5, 6, 7, 12, 13, 14, 15);
  }
}

[[gnu::target("avx2")]] __m128i sixteenBytes(const std::byte* from) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

[[gnu::target("avx2")]] void storeFour(__m128i samples, double* out) {
  const __m256d scale = _mm256_set1_pd(1.0 / kPlainFullScale);
  _mm256_storeu_pd(out, _mm256_mul_pd(_mm256_cvtepi32_pd(samples), scale));
}

}  // namespace

bool processorDecodesByVectors() {
  return __builtin_cpu_supports("avx2");
}

[[gnu::target("avx2")]] size_t decodePlainStereoByVectors(const std::byte* from,
                                                          size_t sample_bytes, double* left,
                                                          double* right, size_t count) {
  const size_t two_frames = 4 * sample_bytes;
  const __m256i order = _mm256_broadcastsi128_si256(bytesOfTwoFrames(sample_bytes));
  size_t done = 0;
  for (; count - done >= 4; done += 4, from += 2 * two_frames) {
    const __m256i bytes = _mm256_set_m128i(sixteenBytes(from + two_frames), sixteenBytes(from));
    const __m256i by_frames = _mm256_shuffle_epi8(bytes, order);
    const __m256i by_channels = _mm256_permute4x64_epi64(by_frames, _MM_SHUFFLE(3, 1, 2, 0));
    storeFour(_mm256_castsi256_si128(by_channels), left + done);
    storeFour(_mm256_extracti128_si256(by_channels, 1), right + done);
  }
  return done;
}

}  // namespace velmor::render
