// Any bytes as the sheet that the checker is given.
#include "disc/sheet/sheet_parser.h"
#include "fuzz/kit/fuzz_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using fuzz::require;
  const velmor::disc::Sheet sheet = velmor::disc::parseSheet(fuzz::textOf(data, size));
  require(sheet.longest_line <= size, "a line is part of the sheet");
  require(sheet.problems.size() <= velmor::disc::kMostProblems, "a report has an end");
  for (const auto& problem : sheet.problems) require(problem.line >= 1, "a problem has a line");
  for (const auto& track : sheet.tracks) {
    require(track.line >= 1, "a track has a line");
    for (const auto& index : track.indices) {
      require(index.number >= -1 && index.number <= 99, "an index has two digits");
      require(index.line >= track.line, "an index stands in its track");
      require(!index.time.readable() || index.time.sectors() >= 0, "a time is a count of sectors");
    }
  }
  return 0;
}
