// The conversion with AVX2. The functions that need it name their target themselves, so that the
// module still runs on processors without it.
#include <cpuid.h>
#include <immintrin.h>

#include <cassert>
#include <cstddef>

#include "module/sink/sample_conversion_x86_64.h"

#define VELMOR_AVX2 __attribute__((target("avx2,fma")))

namespace {

/// 2 S x + 1/2 of four samples (S = 32768), whose use sample_conversion_sse2.cpp explains. Fusing
/// the multiplication with the addition changes nothing: the product is exact, S being a power of
/// two, so that there is only one rounding either way.
VELMOR_AVX2 __m256d doubledAndHalf(const double* x) {
  return _mm256_fmadd_pd(_mm256_loadu_pd(x), _mm256_set1_pd(65536.0), _mm256_set1_pd(0.5));
}

/// The same with silence for a NaN and with what is far beyond full scale brought near enough for
/// 32 bits; it saturates all the same. (The order of the operands makes a NaN the result of both.)
VELMOR_AVX2 __m256d tamed(__m256d y) {
  const __m256d within =
      _mm256_min_pd(_mm256_set1_pd(0x1p20), _mm256_max_pd(_mm256_set1_pd(-0x1p20), y));
  return _mm256_and_pd(within, _mm256_cmp_pd(y, y, _CMP_ORD_Q));
}

/// Four frames from four y = 2 S x + 1/2 of each channel, rounded but not yet saturated: in each
/// half of the result two samples of the left channel, then two of the right one. Doubles between
/// 2^52 and 2^53 are the integers, so the sum y + 3 * 2^51 rounds to rne(y) + 3 * 2^51. The lower
/// half of its bits is rne(y) modulo 2^32, since 3 * 2^51 is a multiple of 2^32.
VELMOR_AVX2 __m256i roundFourFrames(__m256d left, __m256d right) {
  const __m256d large = _mm256_set1_pd(0x1.8p52);
  const __m256 l = _mm256_castpd_ps(_mm256_add_pd(left, large));
  const __m256 r = _mm256_castpd_ps(_mm256_add_pd(right, large));
  const __m256 lower_halves = _mm256_shuffle_ps(l, r, _MM_SHUFFLE(2, 0, 2, 0));
  return _mm256_srai_epi32(_mm256_castps_si256(lower_halves), 1);
}

/// Eight frames from two results of roundFourFrames(), packed to 16 bits, which saturates them, and
/// put in the order of the image.
VELMOR_AVX2 __m256i inImageOrder(__m256i first_four, __m256i last_four) {
  // Each half of the packed frames has two frames of the first four and two of the last four,
  // either as left, left, right, right.
  const __m128i frame_order = _mm_setr_epi8(0, 1, 4, 5, 2, 3, 6, 7, 8, 9, 12, 13, 10, 11, 14, 15);
  const __m256i packed = _mm256_packs_epi32(first_four, last_four);
  const __m256i frames = _mm256_shuffle_epi8(packed, _mm256_broadcastsi128_si256(frame_order));
  return _mm256_permute4x64_epi64(frames, _MM_SHUFFLE(3, 1, 2, 0));
}

VELMOR_AVX2 void storeEightFrames(__m256i eight, int16_t* out, int at) {
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 2 * static_cast<ptrdiff_t>(at)), eight);
}

/// Any samples at all: the first `frames` frames, a multiple of eight.
VELMOR_AVX2 void convertWildFramesAvx2(const double* left, const double* right, int frames,
                                       int16_t* out) {
  for (int at = 0; at < frames; at += 8) {
    const __m256i first_four =
        roundFourFrames(tamed(doubledAndHalf(left + at)), tamed(doubledAndHalf(right + at)));
    const __m256i last_four = roundFourFrames(tamed(doubledAndHalf(left + at + 4)),
                                              tamed(doubledAndHalf(right + at + 4)));
    storeEightFrames(inImageOrder(first_four, last_four), out, at);
  }
}

/// The low half of the control register XCR0, which tells whose registers the system saves when it
/// switches threads.
unsigned savedRegisterFiles() {
  unsigned low = 0;
  unsigned high = 0;
  __asm__ volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return low;
}

}  // namespace

bool processorHasAvx2() {
  constexpr unsigned kSseAndAvxState = 0x6;
  unsigned eax = 0;
  unsigned ebx = 0;
  unsigned ecx = 0;
  unsigned edx = 0;
  __cpuid(1, eax, ebx, ecx, edx);  // which every processor of 64 bits answers
  if (!(ecx & bit_FMA) || !(ecx & bit_OSXSAVE) ||
      (savedRegisterFiles() & kSseAndAvxState) != kSseAndAvxState) {
    return false;
  }
  return __get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) && (ebx & bit_AVX2);
}

VELMOR_AVX2 void convertFramesAvx2(const double* left, const double* right, int frames,
                                   int16_t* out) {
  assert(roundsToNearest() && processorHasAvx2());
  // The sum of all y^2 stays below 2^60 only if every |y| is below 2^30, which 32 bits hold, and is
  // not below it if there was a NaN.
  __m256d energy[4] = {};
  int done = 0;
  for (; frames - done >= 8; done += 8) {
    const __m256d l0 = doubledAndHalf(left + done);
    const __m256d l4 = doubledAndHalf(left + done + 4);
    const __m256d r0 = doubledAndHalf(right + done);
    const __m256d r4 = doubledAndHalf(right + done + 4);
    energy[0] = _mm256_fmadd_pd(l0, l0, energy[0]);
    energy[1] = _mm256_fmadd_pd(l4, l4, energy[1]);
    energy[2] = _mm256_fmadd_pd(r0, r0, energy[2]);
    energy[3] = _mm256_fmadd_pd(r4, r4, energy[3]);
    storeEightFrames(inImageOrder(roundFourFrames(l0, r0), roundFourFrames(l4, r4)), out, done);
  }
  // A block that has such a sample is converted once more.
  const __m256d sum =
      _mm256_add_pd(_mm256_add_pd(energy[0], energy[1]), _mm256_add_pd(energy[2], energy[3]));
  const __m256d wild = _mm256_cmp_pd(sum, _mm256_set1_pd(0x1p60), _CMP_NLT_UQ);
  if (_mm256_movemask_pd(wild)) convertWildFramesAvx2(left, right, done, out);
  convertFramesPlain(left + done, right + done, frames - done,
                     out + 2 * static_cast<ptrdiff_t>(done));
}
