// The wide form. Its functions carry their own target, so that the module runs on processors
// without it.
#include <cpuid.h>
#include <immintrin.h>

#include <climits>
#include <cstddef>

#include "sink/sample_conversion.h"

#define VELMOR_AVX2 __attribute__((target("avx2,fma")))

namespace {

/// Four samples at twice their height, rounded to the nearest even integer, as in the narrow form.
/// Fused, and yet the plain formula's value: the product by a power of two is exact, so there is
/// one rounding anyway.
VELMOR_AVX2 __m128i doubledFour(const double* x) {
  const __m256d scale = _mm256_set1_pd(65536.0);
  const __m256d half = _mm256_set1_pd(0.5);
  return _mm256_cvtpd_epi32(_mm256_fmadd_pd(_mm256_loadu_pd(x), scale, half));
}

/// Eight of them, first to last.
VELMOR_AVX2 __m256i doubledEight(const double* x) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(doubledFour(x)), doubledFour(x + 4), 1);
}

/// The low half of XCR0: which register files the system saves.
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
  if (!__get_cpuid(1, &eax, &ebx, &ecx, &edx)) return false;
  if (!(ecx & bit_FMA) || !(ecx & bit_OSXSAVE) ||
      (savedRegisterFiles() & kSseAndAvxState) != kSseAndAvxState) {
    return false;
  }
  return __get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) && (ebx & bit_AVX2);
}

VELMOR_AVX2 void convertFramesAvx2(const double* left, const double* right, int frames,
                                   int16_t* out) {
  // From four samples of the left channel and four of the right to four frames, in each half.
  const __m128i frame_order = _mm_setr_epi8(0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15);
  const __m256i interleaved = _mm256_broadcastsi128_si256(frame_order);
  __m256i lowest = _mm256_setzero_si256();
  int done = 0;
  for (; frames - done >= 8; done += 8) {
    const __m256i l = doubledEight(left + done);
    const __m256i r = doubledEight(right + done);
    lowest = _mm256_min_epi32(lowest, _mm256_min_epi32(l, r));
    const __m256i both = _mm256_packs_epi32(_mm256_srai_epi32(l, 1), _mm256_srai_epi32(r, 1));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 2 * static_cast<ptrdiff_t>(done)),
                        _mm256_shuffle_epi8(both, interleaved));
  }
  // As in the narrow form: such a block is done again, sample by sample.
  const __m256i wild = _mm256_cmpeq_epi32(lowest, _mm256_set1_epi32(INT_MIN));
  if (_mm256_movemask_epi8(wild)) done = 0;
  convertFramesPlain(left + done, right + done, frames - done,
                     out + 2 * static_cast<ptrdiff_t>(done));
}
