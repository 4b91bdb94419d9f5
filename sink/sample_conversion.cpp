#include "sink/sample_conversion.h"

#include <emmintrin.h>

#include <algorithm>
#include <climits>
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

/// What the processor answers for a NaN and for what 32 bits cannot hold.
constexpr int kIndefinite = INT_MIN;

/// Four samples, rounded but not yet saturated, as 32-bit integers; sets lanes of `wild` where
/// there was no integer.
__m128i roundFour(const double* x, __m128i& wild) {
  const __m128d scale = _mm_set1_pd(kFullScale);
  const __m128d half = _mm_set1_pd(0.5);
  const __m128d a = _mm_add_pd(_mm_mul_pd(_mm_loadu_pd(x), scale), half);
  const __m128d b = _mm_add_pd(_mm_mul_pd(_mm_loadu_pd(x + 2), scale), half);
  // floor: truncate, then take one off where that rounded up. Adding an offset instead would round
  // once more.
  const __m128i whole_a = _mm_cvttpd_epi32(a);
  const __m128i whole_b = _mm_cvttpd_epi32(b);
  const __m128 above_a = _mm_castpd_ps(_mm_cmpgt_pd(_mm_cvtepi32_pd(whole_a), a));
  const __m128 above_b = _mm_castpd_ps(_mm_cmpgt_pd(_mm_cvtepi32_pd(whole_b), b));
  const __m128i whole = _mm_unpacklo_epi64(whole_a, whole_b);
  const __m128 above = _mm_shuffle_ps(above_a, above_b, _MM_SHUFFLE(2, 0, 2, 0));
  wild = _mm_or_si128(wild, _mm_cmpeq_epi32(whole, _mm_set1_epi32(kIndefinite)));
  return _mm_add_epi32(whole, _mm_castps_si128(above));
}

}  // namespace

void convertFramesPlain(const double* left, const double* right, int frames, int16_t* out) {
  for (ptrdiff_t i = 0; i < frames; ++i) {
    out[2 * i] = convertSample(left[i]);
    out[2 * i + 1] = convertSample(right[i]);
  }
}

void convertFramesSse2(const double* left, const double* right, int frames, int16_t* out) {
  __m128i wild = _mm_setzero_si128();
  int done = 0;
  for (; frames - done >= 4; done += 4) {
    // The packing saturates.
    const __m128i both =
        _mm_packs_epi32(roundFour(left + done, wild), roundFour(right + done, wild));
    const __m128i interleaved = _mm_unpacklo_epi16(both, _mm_srli_si128(both, 8));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 2 * static_cast<ptrdiff_t>(done)),
                     interleaved);
  }
  // No healthy mix has a NaN or 96 dB too much in it: a block that has is done again, sample by
  // sample.
  if (_mm_movemask_epi8(wild)) done = 0;
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
