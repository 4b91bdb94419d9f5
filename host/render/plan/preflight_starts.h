// Checks before the render where the sheet will put the tracks.
#pragma once

#include "abi/sink_registration.h"
#include "host/render/plan/preflight_findings.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

/// Adds a warning for starts that the sheet cannot give exactly, and for an INDEX 00 that falls
/// onto its INDEX 01.
void checkStarts(const SinkConfig& config, const TrackPlan& plan, PreflightFindings& findings);

}  // namespace velmor::render
