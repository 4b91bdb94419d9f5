// Any bytes as packs of CD-TEXT. What was read and is sound can be written again and read as the
// same.
#include "disc/cd_text/pack_reading.h"
#include "disc/cd_text/pack_writing.h"
#include "fuzz/kit/fuzz_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using fuzz::require;
  using namespace velmor::disc;
  const ReadPacks read = readPacks(fuzz::textOf(data, size));
  require(read.packs <= size / kWholePackBytes, "a pack has 18 bytes");
  require(read.problems.size() <= kMostPackProblems, "a report has an end");
  for (const PackProblem& problem : read.problems) require(!problem.what.empty(), "it says what");
  const bool sound = read.problems.empty() && read.last_track <= 99;
  if (!sound || textPacks(read.texts) > kMostTextPacks) return 0;
  const ReadPacks again = readPacks(packBytes(read.texts));
  if (!read.texts.hasCdText()) return 0;
  require(again.problems.empty(), "what was written is sound");
  for (size_t kind = 0; kind < kTextKinds; ++kind) {
    require(again.texts.blocks[kind].disc == read.texts.blocks[kind].disc, "the disc's text stays");
    require(again.texts.blocks[kind].tracks == read.texts.blocks[kind].tracks,
            "the tracks' texts stay");
  }
  return 0;
}
