#include "host/render/output/input_treatment.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "disc/text/phrases.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::render {

namespace {

/// An input for which dither was wanted, but whose samples on the disc all fit 16 bits, stays as it
/// is.
To16Bits doneTo(const InputInfo& info, const InputOutcome& outcome) {
  const bool is_left = info.to_16_bits == To16Bits::kDithered && !outcome.has_added_dither;
  return is_left ? To16Bits::kExact : info.to_16_bits;
}

std::string exactOrNot(const InputInfo& info, const InputOutcome& outcome) {
  switch (doneTo(info, outcome)) {
    case To16Bits::kExact:
      return info.to_16_bits == To16Bits::kExact ? std::to_string(info.bits) + " bit: exact"
                                                 : "all samples fit 16 bit: exact";
    case To16Bits::kRounded:
      return info.rate == disc::kSampleRate ? "rounded from " + info.coding : "rounded";
    case To16Bits::kDithered:
      return "TPDF dither";
  }
  return {};
}

/// The end of a warning: how far the worst sample is beyond full scale, and what to do.
std::string worstAndAdvice(double peak) {
  if (std::isinf(peak)) return "which is infinite or no number; export it again";
  const double decibels = 20.0 * std::log10(peak);
  char text[32];
  snprintf(text, sizeof(text), "by %.1f dB", decibels);
  return (decibels < 0.05 ? std::string("by less than 0.1 dB") : text) +
         "; lower its level and render again";
}

}  // namespace

std::string treatmentOf(const InputInfo& info, const InputOutcome& outcome) {
  std::string made = exactOrNot(info, outcome);
  if (info.rate == disc::kSampleRate) return made;
  return "resampled from " + std::to_string(info.rate) + " Hz, " + made;
}

std::string treatmentWord(const InputInfo& info, const InputOutcome& outcome) {
  switch (doneTo(info, outcome)) {
    case To16Bits::kExact:
      return "exact";
    case To16Bits::kRounded:
      return "rounded";
    case To16Bits::kDithered:
      return "dithered";
  }
  return {};
}

void printTreatments(const Album& album, const std::vector<InputOutcome>& inputs) {
  std::vector<std::pair<std::string, std::vector<std::string>>> lines;
  for (const InputOutcome& outcome : inputs) {
    const InputInfo& info = album.inputs[outcome.input].info;
    const std::string treatment = treatmentOf(info, outcome);
    auto line = std::find_if(lines.begin(), lines.end(),
                             [&](const auto& one) { return one.first == treatment; });
    if (line == lines.end()) line = lines.insert(line, {treatment, {}});
    line->second.push_back(info.path);
  }
  for (const auto& [treatment, paths] : lines) {
    printf("%s: %s\n", disc::listed(paths).c_str(), treatment.c_str());
  }
}

std::vector<std::string> clippingWarnings(const Album& album,
                                          const std::vector<InputOutcome>& inputs) {
  std::vector<std::string> warnings;
  for (const InputOutcome& outcome : inputs) {
    const Clipping& clipping = outcome.clipping;
    if (clipping.samples == 0) continue;
    const double worst = secondsInInput(album, outcome.input, clipping.worst_frame);
    warnings.push_back(disc::inQuotes(album.inputs[outcome.input].info.path) +
                       " clips: " + disc::counted(clipping.samples, "sample") +
                       " beyond full scale, the worst at " + disc::clockTime(worst) + " of it, " +
                       worstAndAdvice(clipping.peak));
  }
  return warnings;
}

double secondsInInput(const Album& album, size_t input, int64_t frame) {
  return disc::secondsOf(album.render_start + frame - album.inputs[input].start);
}

}  // namespace velmor::render
