// Finds what will not work on the disc before anything is rendered.
#pragma once

#include "abi/sink_registration.h"
#include "host/render/album/host_project.h"
#include "host/render/plan/preflight_findings.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

/// Looks at a render of `project` that `plan` lays out: numbers and lengths of the tracks, texts,
/// codes and the sheet's times. `allow_overlong`: the disc may be longer than 80 minutes.
PreflightFindings checkBeforeRender(const SinkConfig& config, const HostProject& project,
                                    const TrackPlan& plan, bool allow_overlong = false);

}  // namespace velmor::render
