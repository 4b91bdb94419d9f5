#include "programs/cdcheck/second_sheets.h"

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

}  // namespace

std::vector<Second> wantedSeconds(const std::string& cue, const std::string& toc) {
  std::vector<Second> wanted;
  if (!cue.empty()) wanted.push_back({cue, disc::cueText});
  if (!toc.empty()) wanted.push_back({toc, disc::tocText});
  if (wanted.size() == 2 && disc::sameFile(cue, toc))
    throw velmor::Failure("--portable and --toc name the same file; give them two names");
  return wanted;
}

std::vector<std::string> writeSeconds(const Report& report, const std::vector<Second>& seconds,
                                      bool force) {
  std::vector<disc::TextFile> files;
  std::vector<std::string> changes;
  for (const Second& s : seconds) {
    refuseTarget(s.path, report.sheet, imagePaths(report), force);
    const disc::PortableDisc disc = makePortable(report, s.path);
    files.push_back({s.path, s.text(disc)});
    if (changes.size() < disc.changes.size()) changes = disc.changes;
  }
  disc::writeWhole(files, force);
  return changes;
}

}  // namespace velmor::programs
