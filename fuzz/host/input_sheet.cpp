// A cue sheet as an input of any bytes: as text, and as a FLAC file's block.
#include <cmath>
#include <span>
#include <vector>

#include "disc/failure.h"
#include "disc/sheet/sheet_parser.h"
#include "fuzz/host/line_of_text.h"
#include "fuzz/kit/fuzz_target.h"
#include "host/render/input/sheets/flac_cuesheet.h"
#include "host/render/input/sheets/sheet_marks.h"

namespace {

void requireMarks(const std::vector<velmor::render::Mark>& marks) {
  for (const auto& mark : marks) {
    fuzz::require(std::isfinite(mark.start) && mark.start >= 0.0, "a track starts at a time");
    fuzz::requireLineOfText(mark.name);
    fuzz::require(!mark.name.empty(), "every track has a name");
  }
}

void readAsText(std::string_view text) {
  const velmor::disc::Sheet sheet = velmor::disc::parseSheet(text);
  try {
    const auto found = velmor::render::marksOfSheet(sheet, "x.cue");
    fuzz::require(found.of_files.size() == sheet.files.size(), "each file has its marks");
    for (const auto& file : found.of_files) {
      requireMarks(file.marks);
      for (const double pause : file.pauses) fuzz::require(pause >= 0.0, "a pause has a place");
      for (const auto& silence : file.silences)
        fuzz::require(silence.frames > 0, "it has a length");
    }
  } catch (const velmor::Failure&) {  // it is refused with a reason
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  readAsText(fuzz::textOf(data, size));
  velmor::render::Tags tags;
  requireMarks(
      velmor::render::marksOfCuesheetBlock(std::as_bytes(std::span(data, size)), 44100, tags)
          .marks);
  fuzz::requireLineOfText(tags.catalogue);
  return 0;
}
