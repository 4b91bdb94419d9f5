// Any bytes as the sheet that a page is made of.
#include "check/check.h"
#include "disc/sheet/sheet_parser.h"
#include "fuzz/kit/fuzz_target.h"
#include "fuzz/page/well_formed.h"
#include "page/album/disc_of_sheet.h"
#include "page/drawing/finding_places.h"
#include "page/html/document.h"
#include "tests/kit/scratch_folder.h"
#include "tests/kit/whole_files.h"

namespace {

using namespace velmor;
using fuzz::require;

/// A folder with one short image, which stands for all that a sheet names.
class ImageFolder {
 public:
  ImageFolder() {
    std::string sound;
    for (int byte = 0; byte < 60 * 2352; ++byte) sound += static_cast<char>(byte * 7);
    test_kit::writeFile(m_folder / "image", sound);
  }
  std::filesystem::path sheet() const { return m_folder / "a.cue"; }

 private:
  test_kit::ScratchFolder m_folder;
};

/// Without loudness, which takes long and reads no bytes of the sheet.
page::MeasuredDisc outlined(const page::PageDisc& disc) {
  page::MeasuredDisc measured;
  measured.outline = page::outlineOf(disc, [](int64_t) {});
  measured.loudness.resize(disc.tracks.size());
  measured.clipped.resize(disc.tracks.size());
  measured.digests.resize(disc.images.size());
  measured.ids = page::discIds(disc);
  return measured;
}

void checkRuns(const page::PageDisc& disc) {
  int64_t end = disc.begin;
  for (const page::AudioRun& run : disc.runs) {
    require(run.at >= end && run.sectors > 0, "nothing lies over another thing");
    require(run.first >= 0 && run.first + run.sectors <= 60, "a run lies in its image");
    end = run.at + run.sectors;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const ImageFolder kImages;
  disc::Sheet sheet = disc::parseSheet(fuzz::textOf(data, size));
  if (sheet.files.size() > 8) return -1;
  for (size_t f = 0; f < sheet.files.size(); ++f) {
    sheet.files[f].name.bytes = "image";
    if (sheet.files[f].type != "MOTOROLA") sheet.files[f].type = "BINARY";
  }
  const check::Report report = check::check(std::move(sheet), kImages.sheet(), {});
  const page::PageDisc disc = page::discOfSheet(report);
  checkRuns(disc);
  const page::MeasuredDisc measured = outlined(disc);
  const auto places = page::findingPlaces(disc, measured);
  const std::vector<check::Reader> readers;
  fuzz::requireWellFormed(page::documentText({disc, measured, places, readers}));
  return 0;
}
