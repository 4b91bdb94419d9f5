// The wide form. Its functions carry their own target, so that the module runs on processors
// without it.
#include <cpuid.h>
#include <immintrin.h>

#include <cstddef>

#include "sink/sample_conversion.h"

#define VELMOR_AVX2 __attribute__((target("avx2")))

namespace {

VELMOR_AVX2 __m128i convertFour(const double* x) {
  __m256d v = _mm256_mul_pd(_mm256_loadu_pd(x), _mm256_set1_pd(32768.0));
  v = _mm256_and_pd(v, _mm256_cmp_pd(v, v, _CMP_ORD_Q));
  v = _mm256_min_pd(_mm256_max_pd(v, _mm256_set1_pd(-32768.0)), _mm256_set1_pd(32767.0));
  return _mm256_cvttpd_epi32(_mm256_floor_pd(_mm256_add_pd(v, _mm256_set1_pd(0.5))));
}

VELMOR_AVX2 __m128i convertEight(const double* x) {
  return _mm_packs_epi32(convertFour(x), convertFour(x + 4));
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
  if (!(ecx & bit_OSXSAVE) || (savedRegisterFiles() & kSseAndAvxState) != kSseAndAvxState) {
    return false;
  }
  return __get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) && (ebx & bit_AVX2);
}

VELMOR_AVX2 void convertFramesAvx2(const double* left, const double* right, int frames,
                                   int16_t* out) {
  int done = 0;
  for (; frames - done >= 8; done += 8) {
    const __m128i l = convertEight(left + done);
    const __m128i r = convertEight(right + done);
    auto* to = reinterpret_cast<__m128i*>(out + 2 * static_cast<ptrdiff_t>(done));
    _mm_storeu_si128(to, _mm_unpacklo_epi16(l, r));
    _mm_storeu_si128(to + 1, _mm_unpackhi_epi16(l, r));
  }
  convertFramesPlain(left + done, right + done, frames - done,
                     out + 2 * static_cast<ptrdiff_t>(done));
}
