#include "check/portable/start_times.h"

#include <cassert>

#include "disc/portable/portable_disc.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

disc::PlainIndex* find(disc::PlainTrack& track, int number) {
  for (disc::PlainIndex& i : track.indices)
    if (i.number == number) return &i;
  return nullptr;
}

/// INDEX 00 keeps its whole seconds before INDEX 01, but for the one at the image's first sector.
void moveTrack(disc::PlainTrack& track, int64_t sectors, const std::string& why,
               std::vector<std::string>& changes) {
  if (sectors == 0) return;
  disc::PlainIndex* start = find(track, 1);
  disc::PlainIndex* gap = find(track, 0);
  const std::string from = disc::msfText(start->sector);
  start->sector += sectors;
  if (gap && gap->file == start->file && gap->sector > 0) gap->sector += sectors;
  changes.push_back("Track " + std::to_string(track.number) + ": INDEX 01 " + from +
                    " is written as " + disc::msfText(start->sector) + ": " + why + '.');
}

void placePause(disc::PlainTrack& track, int64_t sector, std::vector<std::string>& changes) {
  disc::PlainIndex pause = *find(track, 1);
  pause.number = 0;
  pause.sector = sector;
  std::erase_if(track.indices, [](const disc::PlainIndex& i) { return i.number == 0; });
  track.indices.insert(track.indices.begin(), pause);
  changes.push_back("Track " + std::to_string(track.number) + ": INDEX 00 is written as " +
                    disc::msfText(sector) + ": the render says that its pause begins there.");
}

bool imageShowsNextSector(const AudioMap& map, int64_t sector) {
  return sector % 3 != 2 && map.silent(sector) && (sector == 0 || map.silent(sector - 1)) &&
         sector + 1 < map.sectors() && !map.silent(sector + 1);
}

}  // namespace

void placeStarts(const Disc& disc, const ExactStarts& exact, std::vector<disc::PlainTrack>& tracks,
                 std::vector<std::string>& changes) {
  const bool known = exact.size() == tracks.size();
  const bool truncated = timesLookTruncated(disc.sheet);
  for (size_t t = 0; t < tracks.size(); ++t) {
    disc::PlainIndex* start = find(tracks[t], 1);
    assert(start != nullptr);
    if (known) {
      moveTrack(tracks[t], exact[t].frame / disc::kFramesPerSector - start->sector,
                "the render says that it starts there", changes);
      if (exact[t].pause) placePause(tracks[t], *exact[t].pause, changes);
    } else if (truncated && find(tracks[t], 0) && disc.audio[start->file] &&
               imageShowsNextSector(*disc.audio[start->file], start->sector)) {
      moveTrack(tracks[t], 1,
                "the sheet's times are truncated, and the image is silent up to that sector and "
                "sounds from it on",
                changes);
    }
  }
}

}  // namespace velmor::check
