#include <algorithm>
#include <set>
#include <system_error>

#include "ddp/extract/extract.h"
#include "ddp/extract/set_audio.h"
#include "disc/files/draft_folder.h"
#include "disc/files/new_file.h"
#include "disc/files/whole_files.h"
#include "disc/text/latin1.h"
#include "disc/text/line_of_text.h"
#include "disc/text/utf8.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::ddp {

namespace {

namespace fs = std::filesystem;

/// Bytes of a title in a file's name; the file systems' limit is 255 with all that stands around.
constexpr size_t kLongestTitle = 180;

struct TrackFile {
  std::string name;
  int64_t first = 0, sectors = 0;
};

/// A title without what file systems give a meaning to.
std::string asFileName(const std::string& title) {
  std::string name = disc::printable(title);
  for (char& c : name)
    if (std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos) c = '_';
  return std::string(disc::beginningOf(name, kLongestTitle));
}

std::string nameOf(const CheckedSet& set, size_t track) {
  const std::string title = set.texts.text(disc::TextKind::kTitle, track + 1);
  const std::string number = disc::twoDigits(static_cast<int64_t>(track) + 1);
  return number + (title.empty() ? "" : ' ' + asFileName(disc::fromLatin1(title))) + ".wav";
}

std::vector<TrackFile> filesOf(const CheckedSet& set, const SetAudio& audio) {
  std::vector<TrackFile> files;
  const std::vector<SetTrack>& tracks = set.layout.tracks;
  const int64_t first = tracks.front().at(1);
  if (!audio.silent(0, first)) files.push_back({"00.wav", 0, first});
  for (size_t t = 0; t < tracks.size(); ++t) {
    const int64_t start = tracks[t].at(1);
    const int64_t end = t + 1 < tracks.size() ? tracks[t + 1].at(1) : set.layout.sectors;
    files.push_back({nameOf(set, t), start, end - start});
  }
  return files;
}

void addLittle(std::string& bytes, uint64_t number, int count) {
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFFU);
}

std::string waveHeader(int64_t sectors) {
  constexpr uint64_t kBits = 16, kChannels = 2, kFormatBytes = 16, kPcm = 1;
  constexpr uint64_t kBytesBeforeData = 36;
  const auto bytes = static_cast<uint64_t>(sectors) * disc::kBytesPerSector;
  std::string header = "RIFF";
  addLittle(header, kBytesBeforeData + bytes, 4);
  header += "WAVEfmt ";
  addLittle(header, kFormatBytes, 4);
  addLittle(header, kPcm, 2);
  addLittle(header, kChannels, 2);
  addLittle(header, disc::kSampleRate, 4);
  addLittle(header, uint64_t{disc::kSampleRate} * disc::kBytesPerFrame, 4);
  addLittle(header, disc::kBytesPerFrame, 2);
  addLittle(header, kBits, 2);
  header += "data";
  addLittle(header, bytes, 4);
  return header;
}

void writeTrack(const SetAudio& audio, const TrackFile& track, const fs::path& path,
                const ExtractProgress& progress) {
  disc::NewFile file(path, path);
  file.write(waveHeader(track.sectors));
  std::vector<char> buffer(static_cast<size_t>(kSectorsAtOnce) * disc::kBytesPerSector);
  for (int64_t done = 0; done < track.sectors;) {
    const int64_t now = std::min(kSectorsAtOnce, track.sectors - done);
    audio.read(track.first + done, buffer.data(), now);
    file.write({buffer.data(), static_cast<size_t>(now) * disc::kBytesPerSector});
    done += now;
    progress(track.first + done, audio.sectors());
  }
  file.sync();
}

}  // namespace

Extracted extractTracks(const CheckedSet& set, const fs::path& folder, bool force,
                        const ExtractProgress& progress) {
  const SetAudio audio(set);
  const std::vector<TrackFile> files = filesOf(set, audio);
  std::set<std::string> names;
  for (const TrackFile& file : files) names.insert(file.name);
  disc::DraftFolder target(folder, force,
                           [names](const std::string& name) { return names.count(name) > 0; });
  Extracted extracted;
  extracted.warnings = target.warnings();
  try {
    for (const TrackFile& file : files) {
      writeTrack(audio, file, target.path() / file.name, progress);
      extracted.written.push_back(target.target() / file.name);
    }
  } catch (const fs::filesystem_error& error) {
    throw disc::notWritten(fs::filesystem_error(
        error.what(), target.target() / error.path1().filename(), error.code()));
  }
  target.takePlace();
  return extracted;
}

}  // namespace velmor::ddp
