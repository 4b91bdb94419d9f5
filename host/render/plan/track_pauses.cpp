#include "host/render/plan/track_pauses.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "disc/units/disc_limits.h"
#include "disc/units/disc_units.h"

namespace velmor::render {

namespace {

int64_t framesOf(double seconds) {
  return std::llround(std::min(seconds * disc::kSampleRate, 9.0e15));
}

/// Whether a track from INDEX 01 at `start` to the next pause at `end`, frames of the image, is
/// long enough in whole sectors.
bool isLongEnough(int64_t start, int64_t end) {
  return end / disc::kFramesPerSector - start / disc::kFramesPerSector >=
         disc::kShortestTrackSectors;
}

void placeOne(const Mark& mark, size_t number, std::vector<PlannedTrack>& tracks) {
  PlannedTrack& track = tracks[number];
  const int64_t before = framesOf(mark.pause_before);
  const int64_t behind = framesOf(mark.pause_behind);
  if (behind > 0) {
    const bool fits = isLongEnough(track.start_frame + behind, track.start_frame + track.frames);
    track.pause_behind = fits ? behind : 0;
    track.pause_lost = !fits;
  }
  // Of track 1 nothing lies in front of the mark but the module's lead-in.
  if (before > 0 && number > 0) {
    const PlannedTrack& last = tracks[number - 1];
    const int64_t pause = before + track.lead_in;
    const bool fits = isLongEnough(last.start_frame + last.pause_behind, track.start_frame - pause);
    track.pause_before = fits ? pause : 0;
    track.pause_lost = track.pause_lost || !fits;
  }
}

}  // namespace

void placePauses(const std::vector<Mark>& marks, TrackPlan& plan) {
  for (size_t i = 0; i < marks.size(); ++i) {
    const auto track = plan.track_of_mark[i];
    if (track) placeOne(marks[i], *track, plan.tracks);
  }
}

}  // namespace velmor::render
