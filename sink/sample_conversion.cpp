#include "sink/sample_conversion.h"

#include <emmintrin.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {

constexpr double kFullScale = 32768.0;
constexpr double kLowest = -32768.0;
constexpr double kHighest = 32767.0;

int16_t convertSample(double x) {
  const double v = x * kFullScale;
  if (std::isnan(v)) return 0;
  if (v <= kLowest) return -32768;
  if (v >= kHighest) return 32767;
  return static_cast<int16_t>(std::floor(v + 0.5));
}

/// Two samples as 32-bit integers in the low half.
__m128i convertPair(const double* x) {
  __m128d v = _mm_mul_pd(_mm_loadu_pd(x), _mm_set1_pd(kFullScale));
  v = _mm_and_pd(v, _mm_cmpord_pd(v, v));
  v = _mm_min_pd(_mm_max_pd(v, _mm_set1_pd(kLowest)), _mm_set1_pd(kHighest));
  v = _mm_add_pd(v, _mm_set1_pd(0.5));
  // floor: truncate, then take one off where that rounded up. Adding an offset instead would round
  // once more.
  const __m128i whole = _mm_cvttpd_epi32(v);
  const __m128i above = _mm_castpd_si128(_mm_cmpgt_pd(_mm_cvtepi32_pd(whole), v));
  return _mm_add_epi32(whole, _mm_shuffle_epi32(above, _MM_SHUFFLE(3, 3, 2, 0)));
}

__m128i convertFour(const double* x) {
  return _mm_unpacklo_epi64(convertPair(x), convertPair(x + 2));
}

}  // namespace

void convertFramesPlain(const double* left, const double* right, int frames, int16_t* out) {
  for (ptrdiff_t i = 0; i < frames; ++i) {
    out[2 * i] = convertSample(left[i]);
    out[2 * i + 1] = convertSample(right[i]);
  }
}

void convertFramesSse2(const double* left, const double* right, int frames, int16_t* out) {
  int done = 0;
  for (; frames - done >= 4; done += 4) {
    const __m128i both = _mm_packs_epi32(convertFour(left + done), convertFour(right + done));
    const __m128i interleaved = _mm_unpacklo_epi16(both, _mm_srli_si128(both, 8));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 2 * static_cast<ptrdiff_t>(done)),
                     interleaved);
  }
  convertFramesPlain(left + done, right + done, frames - done,
                     out + 2 * static_cast<ptrdiff_t>(done));
}

void convertFrames(const double* left, const double* right, int spacing, int frames, int16_t* out) {
  static const ConvertFramesFn convert = processorHasAvx2() ? convertFramesAvx2 : convertFramesSse2;
  if (spacing == 1) {
    convert(left, right, frames, out);
    return;
  }
  // Spaced samples are gathered piece by piece into cache, so that there is one conversion.
  constexpr int kPiece = 256;
  double gathered_left[kPiece];
  double gathered_right[kPiece];
  for (int done = 0; done < frames; done += kPiece) {
    const int n = std::min(frames - done, kPiece);
    for (int i = 0; i < n; ++i) {
      const ptrdiff_t from = static_cast<ptrdiff_t>(done + i) * spacing;
      gathered_left[i] = left[from];
      gathered_right[i] = right[from];
    }
    convert(gathered_left, gathered_right, n, out + 2 * static_cast<ptrdiff_t>(done));
  }
}
