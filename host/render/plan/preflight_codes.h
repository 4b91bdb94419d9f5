// Checks the catalogue number and the ISRCs of a disc before the render.
#pragma once

#include "host/render/album/host_project.h"
#include "host/render/plan/preflight_findings.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

/// Adds a warning for each code of a wrong form or with a wrong check digit, and for each ISRC that
/// reaches no track, or another track than the one it was given for.
void checkCodes(const HostProject& project, const TrackPlan& plan, PreflightFindings& findings);

}  // namespace velmor::render
