// An Audacity label track of any bytes.
#include "host/render/input/marks/label_track.h"

#include <cmath>

#include "fuzz/host/line_of_text.h"
#include "fuzz/kit/fuzz_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const auto track = velmor::render::parseLabelTrack(fuzz::textOf(data, size));
  for (const auto& mark : track.marks) {
    fuzz::require(std::isfinite(mark.start) && mark.start >= 0.0, "a label starts at a time");
    fuzz::require(!mark.end || (std::isfinite(*mark.end) && *mark.end > mark.start),
                  "a label ends after its start");
    fuzz::requireLineOfText(mark.name);
  }
  for (const auto& warning : track.warnings) fuzz::requireLineOfText(warning);
  return 0;
}
