#include "ddp/extract/set_audio.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "disc/text/phrases.h"
#include "disc/units/disc_units.h"

namespace velmor::ddp {

namespace {

SetFile openAudio(const CheckedSet& set) {
  OpenedFile opened = SetFolder(set.folder).open(set.audio_file);
  if (!opened.file)
    throw Failure(disc::inQuotes((set.folder / set.audio_file).string()) + ' ' + opened.problem);
  return std::move(*opened.file);
}

}  // namespace

SetAudio::SetAudio(const CheckedSet& set)
    : m_name((set.folder / set.audio_file).string()),
      m_file(openAudio(set)),
      m_sectors(set.layout.sectors) {}

void SetAudio::read(int64_t sector, char* bytes, int64_t sectors) const {
  const auto count = static_cast<size_t>(sectors * disc::kBytesPerSector);
  if (m_file.read(sector * disc::kBytesPerSector, bytes, count) != count)
    throw Failure("reading " + disc::inQuotes(m_name) + " broke off at sector " +
                  std::to_string(sector) + "; copy it from its source again");
}

bool SetAudio::silent(int64_t sector, int64_t sectors) const {
  std::vector<char> bytes(static_cast<size_t>(kSectorsAtOnce * disc::kBytesPerSector));
  for (const int64_t end = sector + sectors; sector < end; sector += kSectorsAtOnce) {
    const int64_t now = std::min(kSectorsAtOnce, end - sector);
    read(sector, bytes.data(), now);
    const auto behind = bytes.begin() + now * disc::kBytesPerSector;
    if (std::any_of(bytes.begin(), behind, [](char c) { return c != 0; })) return false;
  }
  return true;
}

int64_t sectorsLeftOut(const CheckedSet& set, const SetAudio& audio) {
  const int64_t pregap = set.layout.tracks.front().at(1);
  return pregap == kShortestFirstPregap && audio.silent(0, pregap) ? pregap : 0;
}

}  // namespace velmor::ddp
