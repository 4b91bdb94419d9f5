#include "host/recording/session/album_layout.h"

#include <string>

#include "disc/text/phrases.h"
#include "disc/units/disc_limits.h"

namespace velmor::recording {
namespace {

/// Where the track before ends: at the pause, if there is one.
int64_t firstSector(const TrackPlace& place) {
  return place.pause.value_or(place.start);
}

[[noreturn]] void refuse(size_t track, const std::string& why) {
  throw Failure("the burn was not begun: track " + std::to_string(track + 1) + " " + why);
}

/// `begin` is the track's first sector, `end` is past its last one.
void checkTrack(size_t track, const TrackPlace& place, int64_t begin, int64_t end) {
  if (begin < 0 || place.start < begin || place.start >= end)
    refuse(track, "of the sheet, from sector " + std::to_string(place.start) +
                      ", does not lie in the image in its order; render the album again");
  // libburn would pad a shorter track with silence, and every later one would start too late.
  if (end - begin < disc::kShortestTrackSectors)
    refuse(track, "is shorter than 4 seconds; move its marker, or join it with a neighbour");
}

}  // namespace

void cutByLayout(SessionPlan& plan, const std::vector<TrackPlace>& layout) {
  if (layout.size() != plan.tracks.size())
    throw Failure("the burn was not begun: the sheet has " +
                  disc::counted(static_cast<int64_t>(layout.size()), "track") +
                  ", and the burn was given " + std::to_string(plan.tracks.size()));
  for (size_t i = 0; i < layout.size(); ++i) {
    // What precedes track 1's INDEX 01 is its pregap, whether the sheet names an INDEX 00 or not.
    const int64_t begin = i == 0 ? 0 : firstSector(layout[i]);
    const int64_t end = i + 1 < layout.size() ? firstSector(layout[i + 1]) : plan.sectors;
    checkTrack(i, layout[i], begin, end);
    plan.tracks[i] = {static_cast<int>(layout[i].start - begin),
                      static_cast<int>(end - layout[i].start), layout[i].start};
  }
}

}  // namespace velmor::recording
