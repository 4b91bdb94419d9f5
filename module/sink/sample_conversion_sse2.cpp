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

/// rne(2 S x + 1/2) of two samples, as 32-bit integers.
__m128i doubledPair(const double* x) {
  const __m128d doubled = _mm_mul_pd(_mm_loadu_pd(x), _mm_set1_pd(kTwiceFullScale));
  return _mm_cvtpd_epi32(_mm_add_pd(doubled, _mm_set1_pd(0.5)));
}

/// Two frames, rounded but not yet saturated, as 32-bit integers. The processor converts a NaN, and
/// what 32 bits cannot hold, to INT_MIN. The smallest upper half seen so far in each lane is kept
/// in `lowest`, where SHRT_MIN tells that there may have been such a sample. (Upper halves, because
/// baseline processors have a minimum of 16-bit integers only.)
__m128i roundTwoFrames(const double* left, const double* right, __m128i& lowest) {
  const __m128i doubled = _mm_unpacklo_epi32(doubledPair(left), doubledPair(right));
  lowest = _mm_min_epi16(lowest, doubled);
  return _mm_srai_epi32(doubled, 1);
}

}  // namespace

bool roundsToNearest() {
  return _MM_GET_ROUNDING_MODE() == _MM_ROUND_NEAREST;
}

void convertFramesSse2(const double* left, const double* right, int frames, int16_t* out) {
  assert(roundsToNearest());
  __m128i lowest = _mm_setzero_si128();
  int done = 0;
  for (; frames - done >= 4; done += 4) {
    // Packing 32-bit integers into 16 bits saturates them.
    const __m128i four = _mm_packs_epi32(roundTwoFrames(left + done, right + done, lowest),
                                         roundTwoFrames(left + done + 2, right + done + 2, lowest));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + 2 * static_cast<ptrdiff_t>(done)), four);
  }
  // A healthy mix has neither a NaN nor a sample that is 90 dB too loud in it. A block that has one
  // is converted once more, sample by sample.
  const __m128i wild = _mm_cmpeq_epi32(_mm_srai_epi32(lowest, 16), _mm_set1_epi32(SHRT_MIN));
  if (_mm_movemask_epi8(wild)) done = 0;
  convertFramesPlain(left + done, right + done, frames - done,
                     out + 2 * static_cast<ptrdiff_t>(done));
}
