#include "host/render/output/exact_starts.h"

namespace velmor::render {

check::ExactStarts startsOf(const TrackPlan& plan) {
  check::ExactStarts starts;
  for (const PlannedTrack& track : plan.tracks) starts.push_back(track.start_frame);
  return starts;
}

}  // namespace velmor::render
