#include "host/render/output/exact_starts.h"

#include <cstddef>

#include "host/render/plan/sheet_times.h"

namespace velmor::render {

check::ExactStarts startsOf(const TrackPlan& plan) {
  check::ExactStarts starts;
  for (size_t i = 0; i < plan.tracks.size(); ++i) {
    const PlannedTrack& track = plan.tracks[i];
    starts.push_back({track.start_frame + track.pause_behind, ownGapSector(plan, i)});
  }
  return starts;
}

}  // namespace velmor::render
