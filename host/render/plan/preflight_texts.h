// Texts that CD-TEXT cannot hold as they are.
#pragma once

#include "host/render/album/host_project.h"
#include "host/render/plan/preflight_findings.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

/// Adds one warning that names the letters which a burned disc's CD-TEXT will spell otherwise.
void checkCdTextLetters(const HostProject& project, const TrackPlan& plan,
                        PreflightFindings& findings);

}  // namespace velmor::render
