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

namespace velmor::programs {

using namespace check;

namespace {

std::vector<std::filesystem::path> imagePaths(const Report& report) {
  std::vector<std::filesystem::path> paths;
  for (const ImageFile& image : report.disc.images) paths.push_back(image.path());
  return paths;
}

/// `image` is empty when the audio stays in the files that it is in.
std::string secondText(const Report& report, const Second& second,
                       const std::filesystem::path& image, std::vector<ImagePiece>& pieces,
                       std::vector<std::string>& changes) {
  disc::PortableDisc disc = makePortable(report, second.path);
  if (!image.empty()) pieces = joinFiles(report, image, second.path, disc);
  std::string text = second.text(disc);
  changes = std::move(disc.changes);
  if (second.text == disc::cueText)
    for (std::string& left : leftForReaders(text, second.path)) changes.push_back(std::move(left));
  return text;
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
    std::vector<std::string> changes_here;
    files.push_back({s.path, secondText(report, s, wanted.joined, pieces, changes_here)});
    if (changes.size() < changes_here.size()) changes = std::move(changes_here);
  }
  if (!wanted.joined.empty())
    files.push_back({wanted.joined, "",
                     [&](const disc::WriteBytes& write) { writePieces(report, pieces, write); }});
  disc::writeWhole(files, force);
  return changes;
}

}  // namespace velmor::programs
