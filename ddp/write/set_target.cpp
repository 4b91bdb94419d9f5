#include "ddp/write/set_target.h"

#include <string>
#include <system_error>

#include "ddp/check/set_files.h"
#include "ddp/write/sheet_audio.h"
#include "disc/files/whole_files.h"
#include "disc/text/phrases.h"

namespace velmor::ddp {

namespace fs = std::filesystem;

SetTarget::SetTarget(const fs::path& folder, bool force)
    : m_folder(folder, force, [names = namesOfSet(folder)](const std::string& name) {
        return names.count(name) > 0;
      }) {}

/// The set's own files are those that would be replaced while they are read.
void SetTarget::refuseOwnImages(const PreparedSet& set) const {
  const auto refuse = [this](const fs::path& source) {
    const fs::path folder = source.has_parent_path() ? source.parent_path() : fs::path(".");
    std::error_code error;
    if (!fs::equivalent(folder, path(), error) || error) return;
    if (namesOfSet(path()).count(source.filename().string()) > 0)
      throw Failure(disc::inQuotes(source.string()) +
                    " lies in the folder of the set and would be replaced by it; choose another "
                    "folder");
  };
  refuse(set.report.sheet);
  for (const check::ImageFile& image : set.report.disc.images) refuse(image.path());
}

void SetTarget::write(const PreparedSet& set, const WrittenSectors& progress) {
  refuseOwnImages(set);
  SheetAudio audio(set.layout.pieces, set.report.disc.images);
  try {
    writeSet(
        m_folder.path(), set.layout.set, set.text_packs,
        [&audio](char* bytes, size_t count) { audio.read(bytes, count); }, progress);
  } catch (const fs::filesystem_error& error) {
    throw disc::notWritten(
        fs::filesystem_error(error.what(), path() / error.path1().filename(), error.code()));
  }
  m_folder.takePlace();
}

}  // namespace velmor::ddp
