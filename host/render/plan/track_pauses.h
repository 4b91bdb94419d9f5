// The pauses that the sheets of inputs give to tracks, beside those that the module makes.
#pragma once

#include <vector>

#include "host/render/input/marks/mark.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

/// Gives the tracks of `plan`, which is complete otherwise, the pauses of the marks that begin
/// them. One that would leave less than four seconds of its own or of the track before is left out,
/// since no disc may have such a track.
void placePauses(const std::vector<Mark>& marks, TrackPlan& plan);

}  // namespace velmor::render
