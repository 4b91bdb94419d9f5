#include "programs/cdcheck/second_sheets.h"

#include <utility>

#include "check/left_for_readers.h"
#include "check/portable/joined_image.h"
#include "check/portable/make_portable.h"
#include "check/portable/refuse_target.h"
#include "disc/files/same_file.h"
#include "disc/files/whole_files.h"
#include "disc/portable/portable_cue.h"
#include "disc/portable/portable_toc.h"
#include "disc/terminal/interrupt.h"
#include "disc/terminal/progress_bar.h"
#include "disc/units/disc_units.h"

namespace velmor::programs {

using namespace check;

namespace {

std::vector<std::filesystem::path> imagePaths(const Report& report) {
  std::vector<std::filesystem::path> paths;
  for (const ImageFile& image : report.disc.images) paths.push_back(image.path());
  return paths;
}

/// Writes the joined image, with a progress bar.
void writeJoined(const Report& report, const std::vector<ImagePiece>& pieces,
                 const disc::WriteBytes& write) {
  disc::ProgressBar bar(true);
  writePieces(report, pieces, write, [&bar](int64_t done, int64_t all) {
    stopIfInterrupted();
    disc::drawBytes(bar, "Joining", done * disc::kBytesPerSector, all * disc::kBytesPerSector);
  });
}

}  // namespace

std::vector<std::filesystem::path> SecondFiles::paths() const {
  std::vector<std::filesystem::path> all;
  for (const Second& s : sheets) all.push_back(s.path);
  if (!joined.empty()) all.push_back(joined);
  return all;
}

SecondFiles wantedSeconds(const std::string& cue, const std::string& toc, const std::string& join) {
  SecondFiles wanted;
  if (!cue.empty()) wanted.sheets.push_back({cue, disc::cueText});
  if (!toc.empty()) wanted.sheets.push_back({toc, disc::tocText});
  wanted.joined = join;
  if (wanted.sheets.size() == 2 && disc::sameFile(cue, toc))
    throw velmor::Failure("--portable and --toc name the same file; give them two names");
  if (!join.empty() && wanted.none())
    throw velmor::Failure("--join needs a sheet that names the image; give --portable too");
  for (const Second& s : wanted.sheets)
    if (!join.empty() && disc::sameFile(s.path, join))
      throw velmor::Failure("--join names the second sheet; give the image another name");
  return wanted;
}

std::vector<std::string> writeSeconds(const Report& report, const SecondFiles& wanted, bool force) {
  for (const std::filesystem::path& path : wanted.paths())
    refuseTarget(path, report.sheet, imagePaths(report), force);
  std::vector<disc::TextFile> files;
  std::vector<std::string> changes;
  std::vector<ImagePiece> pieces;
  for (const Second& s : wanted.sheets) {
    disc::PortableDisc disc = makePortable(report, s.path);
    if (!wanted.joined.empty()) pieces = joinFiles(report, wanted.joined, s.path, disc);
    files.push_back({s.path, s.text(disc)});
    // The sheet comes first, and the table of contents changes nothing that the sheet does not.
    if (changes.empty()) changes = std::move(disc.changes);
  }
  if (!wanted.joined.empty())
    files.push_back({wanted.joined, "",
                     [&](const disc::WriteBytes& write) { writeJoined(report, pieces, write); }});
  disc::writeWhole(files, force);
  // Readers go by the image's name as well, and a joined image is there only now.
  for (size_t s = 0; s < wanted.sheets.size(); ++s)
    if (wanted.sheets[s].text == disc::cueText)
      for (std::string& left : leftForReaders(files[s].text, files[s].path))
        changes.push_back(std::move(left));
  return changes;
}

}  // namespace velmor::programs
