// The wide form. Its functions carry their own target, so that the module runs on processors
// without it.
#include <cpuid.h>
#include <immintrin.h>

#include <cstddef>

#include "module/sink/sample_conversion.h"

#define VELMOR_AVX2 __attribute__((target("avx2,fma")))

namespace {

/// Four samples at twice their height and a half, as in the narrow form. Fused, and yet the plain
/// formula's value: the product by a power of two is exact, so there is one rounding anyway.
VELMOR_AVX2 __m256d doubledAndHalf(const double* x) {
  return _mm256_fmadd_pd(_mm256_loadu_pd(x), _mm256_set1_pd(65536.0), _mm256_set1_pd(0.5));
}

/// Four frames from what the above gives, rounded but not yet saturated: in each half two samples
/// of the left channel, then two of the right one. Beside a number this large no fraction has room,
/// so that the sum rounds to the nearest even integer, and its lower half holds that integer.
VELMOR_AVX2 __m256i roundFourFrames(__m256d left, __m256d right) {
  const __m256d large = _mm256_set1_pd(0x1.8p52);
  const __m256 l = _mm256_castpd_ps(_mm256_add_pd(left, large));
  const __m256 r = _mm256_castpd_ps(_mm256_add_pd(right, large));
  const __m256 lower_halves = _mm256_shuffle_ps(l, r, _MM_SHUFFLE(2, 0, 2, 0));
  return _mm256_srai_epi32(_mm256_castps_si256(lower_halves), 1);
}

/// What roundFourFrames() leaves, packed and saturated, in the order of the image.
VELMOR_AVX2 __m256i inImageOrder(__m256i first_four, __m256i last_four) {
  // Each half has frames 0 and 1 of one and of the other four: left, left, right, right.
  const __m128i frame_order = _mm_setr_epi8(0, 1, 4, 5, 2, 3, 6, 7, 8, 9, 12, 13, 10, 11, 14, 15);
  const __m256i packed = _mm256_packs_epi32(first_four, last_four);
  const __m256i frames = _mm256_shuffle_epi8(packed, _mm256_broadcastsi128_si256(frame_order));
  return _mm256_permute4x64_epi64(frames, _MM_SHUFFLE(3, 1, 2, 0));
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
  // The energy of the block tells whether there was a NaN or what 32 bits cannot hold.
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
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 2 * static_cast<ptrdiff_t>(done)),
                        inImageOrder(roundFourFrames(l0, r0), roundFourFrames(l4, r4)));
  }
  // As in the narrow form: such a block is done again, sample by sample.
  const __m256d sum =
      _mm256_add_pd(_mm256_add_pd(energy[0], energy[1]), _mm256_add_pd(energy[2], energy[3]));
  const __m256d wild = _mm256_cmp_pd(sum, _mm256_set1_pd(0x1p60), _CMP_NLT_UQ);
  if (_mm256_movemask_pd(wild)) done = 0;
  convertFramesPlain(left + done, right + done, frames - done,
                     out + 2 * static_cast<ptrdiff_t>(done));
}
