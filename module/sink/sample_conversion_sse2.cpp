// The conversion with SSE2, which every processor of this kind has.
#include <emmintrin.h>

#include <cassert>
#include <climits>
#include <cstddef>

#include "module/sink/sample_conversion_x86_64.h"

namespace {

constexpr double kTwiceFullScale = 65536.0;

// The forms for x86-64 need no floor, for which baseline processors would have to convert to
// integers and back. With S = 32768 and rne(y) the nearest integer to y, the even one of two as
// near, they use
//
//     floor(S x + 1/2) = floor(rne(2 S x + 1/2) / 2)
//
// Let n be the left side. Then n - 1/2 <= S x < n + 1/2, so 2n - 1/2 <= 2 S x + 1/2 < 2n + 3/2. The
// lower bound lies between 2n - 1 and 2n and rounds to the even one, 2n; below the upper bound
// nothing rounds higher than 2n + 1. Halved and rounded down, both give n.
//
// In doubles the products are exact, S being a power of two, and only the sums round. Just below a
// half step both round up to it (S x = 1/2 - 2^-54 becomes 1 on either side), so that the two forms
// agree there as well.

/// 2 S x + 1/2 of two samples.
__m128d pairDoubledAndHalf(const double* x) {
  const __m128d doubled = _mm_mul_pd(_mm_loadu_pd(x), _mm_set1_pd(kTwiceFullScale));
  return _mm_add_pd(doubled, _mm_set1_pd(0.5));
}

/// The same with silence for a NaN and with what is far beyond full scale brought near enough for
/// 32 bits; it saturates all the same. (The order of the operands makes a NaN the result of both.)
__m128d tamedPair(__m128d y) {
  const __m128d within = _mm_min_pd(_mm_set1_pd(0x1p20), _mm_max_pd(_mm_set1_pd(-0x1p20), y));
  return _mm_and_pd(within, _mm_cmpord_pd(y, y));
}

/// Two frames from y = 2 S x + 1/2 of each channel: rne(y) as 32-bit integers.
__m128i roundTwoFrames(__m128d left, __m128d right) {
  return _mm_unpacklo_epi32(_mm_cvtpd_epi32(left), _mm_cvtpd_epi32(right));
}

/// Stores four frames from two results of roundTwoFrames(). Packing 32-bit integers into 16 bits
/// saturates them.
void storeFourFrames(__m128i first_two, __m128i last_two, int16_t* out, int at) {
  const __m128i four = _mm_packs_epi32(_mm_srai_epi32(first_two, 1), _mm_srai_epi32(last_two, 1));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 2 * static_cast<ptrdiff_t>(at)), four);
}

/// Any samples at all: the first `frames` frames, a multiple of four.
void convertWildFramesSse2(const double* left, const double* right, int frames, int16_t* out) {
  for (int at = 0; at < frames; at += 4) {
    storeFourFrames(roundTwoFrames(tamedPair(pairDoubledAndHalf(left + at)),
                                   tamedPair(pairDoubledAndHalf(right + at))),
                    roundTwoFrames(tamedPair(pairDoubledAndHalf(left + at + 2)),
                                   tamedPair(pairDoubledAndHalf(right + at + 2))),
                    out, at);
  }
}

}  // namespace

bool roundsToNearest() {
  return _MM_GET_ROUNDING_MODE() == _MM_ROUND_NEAREST;
}

void convertFramesSse2(const double* left, const double* right, int frames, int16_t* out) {
  assert(roundsToNearest());
  // The processor converts a NaN, and what 32 bits cannot hold, to INT_MIN. So the smallest upper
  // half that each lane has seen is kept: SHRT_MIN tells that there may have been such a sample.
  // (Upper halves, because baseline processors have a minimum of 16-bit integers only.)
  __m128i lowest = _mm_setzero_si128();
  int done = 0;
  for (; frames - done >= 4; done += 4) {
    const __m128i first_two =
        roundTwoFrames(pairDoubledAndHalf(left + done), pairDoubledAndHalf(right + done));
    const __m128i last_two =
        roundTwoFrames(pairDoubledAndHalf(left + done + 2), pairDoubledAndHalf(right + done + 2));
    lowest = _mm_min_epi16(lowest, _mm_min_epi16(first_two, last_two));
    storeFourFrames(first_two, last_two, out, done);
  }
  // A healthy mix has neither a NaN nor a sample that is 90 dB too loud in it. A block that has one
  // is converted once more.
  const __m128i wild = _mm_cmpeq_epi32(_mm_srai_epi32(lowest, 16), _mm_set1_epi32(SHRT_MIN));
  if (_mm_movemask_epi8(wild)) convertWildFramesSse2(left, right, done, out);
  convertFramesPlain(left + done, right + done, frames - done,
                     out + 2 * static_cast<ptrdiff_t>(done));
}
