// A finished sheet as velmor-render and the recorder look at it.
#include <fcntl.h>
#include <unistd.h>

#include "disc/sheet/sheet_parser.h"
#include "disc/sheet/sheet_texts.h"
#include "fuzz/kit/fuzz_target.h"
#include "host/render/output/cue_text.h"
#include "tests/kit/scratch_folder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const test_kit::ScratchFolder kFolder;
  static const std::string kPath = (kFolder.path() / "album.cue").string();
  const int file = open(kPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (file < 0 || write(file, data, size) != static_cast<ssize_t>(size)) abort();
  close(file);

  const auto seen = velmor::render::readCueText(kPath);
  fuzz::require(!seen.complete || !seen.tracks.empty(), "a complete sheet has a track");
  const auto recorded = velmor::disc::textsOf(velmor::disc::parseSheet(fuzz::textOf(data, size)));
  fuzz::require(recorded.tracks.size() >= seen.tracks.size(),
                "the recorder finds every track that the render wrote");
  return 0;
}
