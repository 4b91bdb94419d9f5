#include "check/portable/start_times.h"

#include "check/image/disc_units.h"

namespace velmor::check {

namespace {

PlainIndex* find(PlainTrack& track, int number) {
  for (PlainIndex& i : track.indices)
    if (i.number == number) return &i;
  return nullptr;
}

/// INDEX 00 keeps its whole seconds before INDEX 01, but for the one at the image's first sector.
void moveTrack(PlainTrack& track, int64_t sectors, const std::string& why,
               std::vector<std::string>& changes) {
  if (sectors == 0) return;
  PlainIndex* start = find(track, 1);
  PlainIndex* gap = find(track, 0);
  const std::string from = msfText(start->sector);
  start->sector += sectors;
  if (gap && gap->file == start->file && gap->sector > 0) gap->sector += sectors;
  changes.push_back("Track " + std::to_string(track.number) + ": INDEX 01 " + from +
                    " is written as " + msfText(start->sector) + ": " + why + '.');
}

bool imageShowsNextSector(const AudioMap& map, int64_t sector) {
  return sector % 3 != 2 && map.silent(sector) && (sector == 0 || map.silent(sector - 1)) &&
         sector + 1 < map.sectors() && !map.silent(sector + 1);
}

}  // namespace

void placeStarts(const Disc& disc, const ExactStarts& exact, std::vector<PlainTrack>& tracks,
                 std::vector<std::string>& changes) {
  const bool known = exact.size() == tracks.size();
  const bool truncated = timesLookTruncated(disc.sheet);
  for (size_t t = 0; t < tracks.size(); ++t) {
    PlainIndex* start = find(tracks[t], 1);
    if (known) {
      moveTrack(tracks[t], exact[t] / kSectorFrames - start->sector,
                "the render says that it starts there", changes);
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
