// What becomes of the pauses that the sheets of inputs give to tracks.
#pragma once

#include "host/render/plan/preflight_findings.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

/// Warns of the pauses that the new sheet cannot say, track by track.
void checkPauses(const TrackPlan& plan, PreflightFindings& findings);

}  // namespace velmor::render
