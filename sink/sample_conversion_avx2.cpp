// The wide form. Its functions carry their own target, so that the module runs on processors
// without it.
#include <cpuid.h>
#include <immintrin.h>

#include <climits>
#include <cstddef>

#include "sink/sample_conversion.h"

#define VELMOR_AVX2 __attribute__((target("avx2,fma")))

namespace {

/// Eight samples, rounded and saturated. `lowest` gathers the least integer of each lane: where
/// there is none, for a NaN and for what 32 bits cannot hold, the processor answers INT_MIN.
VELMOR_AVX2 __m128i convertEight(const double* x, __m128i& lowest) {
  const __m256d scale = _mm256_set1_pd(32768.0);
  const __m256d half = _mm256_set1_pd(0.5);
  // Fused, and yet the plain formula's value: the product by a power of two is exact, so there is
  // one rounding anyway.
  const __m256d a = _mm256_fmadd_pd(_mm256_loadu_pd(x), scale, half);
  const __m256d b = _mm256_fmadd_pd(_mm256_loadu_pd(x + 4), scale, half);
  const __m128i whole_a = _mm256_cvttpd_epi32(_mm256_floor_pd(a));
  const __m128i whole_b = _mm256_cvttpd_epi32(_mm256_floor_pd(b));
  lowest = _mm_min_epi32(lowest, _mm_min_epi32(whole_a, whole_b));
  return _mm_packs_epi32(whole_a, whole_b);
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
  __m128i lowest = _mm_setzero_si128();
  int done = 0;
  for (; frames - done >= 8; done += 8) {
    const __m128i l = convertEight(left + done, lowest);
    const __m128i r = convertEight(right + done, lowest);
    auto* to = reinterpret_cast<__m128i*>(out + 2 * static_cast<ptrdiff_t>(done));
    _mm_storeu_si128(to, _mm_unpacklo_epi16(l, r));
    _mm_storeu_si128(to + 1, _mm_unpackhi_epi16(l, r));
  }
  // As in the narrow form: such a block is done again, sample by sample.
  const __m128i wild = _mm_cmpeq_epi32(lowest, _mm_set1_epi32(INT_MIN));
  if (_mm_movemask_epi8(wild)) done = 0;
  convertFramesPlain(left + done, right + done, frames - done,
                     out + 2 * static_cast<ptrdiff_t>(done));
}
