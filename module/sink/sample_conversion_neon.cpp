// The conversion with NEON, which every processor of the arm64 kind has.
#include <arm_neon.h>

#include <cstddef>

#include "module/sink/sample_conversion.h"

namespace {

/// Four samples as 32-bit integers. The processor rounds a sum down to 64 bits by itself, saturates
/// what they cannot hold, and takes a NaN for 0: the plain form, step by step. Fusing the
/// multiplication with the addition changes nothing, since the product is exact.
int32x4_t roundFourSamples(const double* x) {
  const float64x2_t half = vdupq_n_f64(0.5);
  const int64x2_t first = vcvtmq_s64_f64(vfmaq_n_f64(half, vld1q_f64(x), 32768.0));
  const int64x2_t last = vcvtmq_s64_f64(vfmaq_n_f64(half, vld1q_f64(x + 2), 32768.0));
  return vqmovn_high_s64(vqmovn_s64(first), last);
}

int16x8_t roundEightSamples(const double* x) {
  return vqmovn_high_s32(vqmovn_s32(roundFourSamples(x)), roundFourSamples(x + 4));
}

void convertFramesNeon(const double* left, const double* right, int frames, int16_t* out) {
  int done = 0;
  for (; frames - done >= 8; done += 8) {
    const int16x8x2_t eight = {roundEightSamples(left + done), roundEightSamples(right + done)};
    vst2q_s16(out + 2 * static_cast<ptrdiff_t>(done), eight);
  }
  convertFramesPlain(left + done, right + done, frames - done,
                     out + 2 * static_cast<ptrdiff_t>(done));
}

}  // namespace

std::span<const VectorForm> vectorForms() {
  static constexpr VectorForm kForms[] = {{"Neon", convertFramesNeon, true}};
  return kForms;
}

// Rounding down does not depend on how the processor is set, and the sum before it is the plain
// form's.
bool vectorFormsAreExact() {
  return true;
}
