#include <algorithm>
#include <list>
#include <system_error>

#include "ddp/extract/album_of_set.h"
#include "ddp/extract/extract.h"
#include "ddp/extract/set_audio.h"
#include "disc/files/draft.h"
#include "disc/files/whole_files.h"
#include "disc/portable/portable_cue.h"
#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_units.h"

namespace velmor::ddp {

namespace {

namespace fs = std::filesystem;

void checkTarget(const fs::path& path, const CheckedSet& set, bool force) {
  const std::string name = path.filename().string();
  if (name.find('"') != std::string::npos || disc::hasControlCharacters(name))
    throw Failure("the output's name " + disc::inQuotes(disc::printable(name)) +
                  " has a quote or a control character, which a cue sheet cannot hold; choose "
                  "another with -o");
  if (name == ".cue" || name == ".bin")
    throw Failure("the output " + disc::inQuotes(disc::printable(path.string())) +
                  " has no usable file name; give one like album.cue with -o");
  std::error_code error;
  const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
  if (!fs::is_directory(folder, error))
    throw Failure("there is no folder " + disc::inQuotes(folder.string()) +
                  " to write to; make it, or choose another with -o");
  for (const SetFileSummary& file : set.files)
    if (fs::equivalent(path, set.folder / file.name, error))
      throw Failure(disc::inQuotes(path.string()) +
                    " is a file of the set, which stays as it is; choose another with -o");
  if (!force && fs::exists(fs::symlink_status(path, error)))
    throw Failure(disc::inQuotes(path.string()) +
                  " exists already; --force replaces it, -o chooses another place");
}

void copySectors(const SetAudio& audio, int64_t from, disc::Draft& image,
                 const ExtractProgress& progress) {
  std::vector<char> buffer(static_cast<size_t>(kSectorsAtOnce) * disc::kBytesPerSector);
  for (int64_t at = from; at < audio.sectors();) {
    const int64_t now = std::min(kSectorsAtOnce, audio.sectors() - at);
    audio.read(at, buffer.data(), now);
    image.write({buffer.data(), static_cast<size_t>(now) * disc::kBytesPerSector});
    at += now;
    progress(at, audio.sectors());
  }
}

}  // namespace

Extracted extractAlbum(const CheckedSet& set, const fs::path& sheet, bool force,
                       const ExtractProgress& progress) {
  fs::path image = sheet;
  image.replace_extension(".bin");
  checkTarget(sheet, set, force);
  checkTarget(image, set, force);
  const SetAudio audio(set);
  const int64_t left_out = sectorsLeftOut(set, audio);
  const disc::PortableDisc album = albumOfSet(set, image.filename().string(), left_out);
  try {
    std::list<disc::Draft> drafts;
    disc::Draft& image_draft = drafts.emplace_back(image);
    copySectors(audio, left_out, image_draft, progress);
    disc::Draft& sheet_draft = drafts.emplace_back(sheet);
    sheet_draft.write(disc::cueText(album));
    for (disc::Draft& draft : drafts) draft.sync();
    disc::placeAll(drafts, force);
  } catch (const fs::filesystem_error& error) {
    throw disc::notWritten(error);
  }
  return {{sheet, image}, album.changes, {}};
}

}  // namespace velmor::ddp
