// What people type: each line as a time, a --marker, a --region, an ISRC and a catalogue number.
#include <cmath>

#include "disc/codes/catalogue_number.h"
#include "disc/codes/isrc.h"
#include "disc/failure.h"
#include "fuzz/host/line_of_text.h"
#include "fuzz/kit/fuzz_target.h"
#include "fuzz/kit/script_line.h"
#include "host/render/input/marks/mark_parsing.h"

namespace {

using velmor::Failure;
using velmor::render::Mark;

constexpr double kLongestTime =
    1e9;  ///< seconds, more than any album's and few enough to count frames in

void requireTime(double seconds) {
  // Minutes, seconds and sectors may add a second to the longest.
  fuzz::require(std::isfinite(seconds) && seconds >= 0.0 && seconds <= kLongestTime + 1.0,
                "a time is a time");
}

void requireMark(const Mark& mark) {
  requireTime(mark.start);
  if (mark.end) {
    requireTime(*mark.end);
    fuzz::require(*mark.end > mark.start, "a region ends after its start");
  }
  fuzz::requireLineOfText(mark.name);
}

/// A refusal is a sentence.
template <class Parse>
void parse(const Parse& wanted) {
  try {
    wanted();
  } catch (const Failure& error) {
    fuzz::require(error.what()[0] != '\0', "a refusal says why");
  }
}

void takeCodes(std::string_view line) {
  const auto isrc = velmor::disc::normalisedIsrc(line);
  if (isrc) {
    fuzz::require(isrc->size() == 12, "an ISRC has 12 characters");
    fuzz::require(velmor::disc::normalisedIsrc(*isrc) == isrc, "a normal ISRC stays as it is");
  }
  velmor::disc::catalogueFault(line);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text = fuzz::textOf(data, size);
  while (!text.empty()) {
    const std::string_view line = fuzz::takeLine(text);
    parse([&] { requireTime(velmor::render::parseTime(line)); });
    parse([&] { requireMark(velmor::render::parseMarkerOption(line)); });
    parse([&] { requireMark(velmor::render::parseRegionOption(line)); });
    takeCodes(line);
  }
  return 0;
}
