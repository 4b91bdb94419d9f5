#include "module/sink/sample_conversion.h"

#include <algorithm>
#include <cassert>
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

/// The fastest form for this very processor.
ConvertFramesFn fastestForm() {
  const std::span<const VectorForm> forms = vectorForms();
  const auto fastest = std::find_if(forms.begin(), forms.end(),
                                    [](const VectorForm& form) { return form.runs_here; });
  assert(fastest != forms.end());
  return fastest->convert;
}

}  // namespace

void convertFramesPlain(const double* left, const double* right, int frames, int16_t* out) {
  for (ptrdiff_t i = 0; i < frames; ++i) {
    out[2 * i] = convertSample(left[i]);
    out[2 * i + 1] = convertSample(right[i]);
  }
}

void convertFrames(const double* left, const double* right, int spacing, int frames, int16_t* out) {
  static const ConvertFramesFn kFastest = fastestForm();
  const ConvertFramesFn convert = vectorFormsAreExact() ? kFastest : convertFramesPlain;
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
