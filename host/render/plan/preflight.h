// What will not work, said before anything is rendered.
#pragma once

#include <string>
#include <vector>

#include "abi/sink_registration.h"
#include "host/render/album/host_project.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

struct Findings {
  std::vector<std::string> errors;  ///< the render is refused
  std::vector<std::string> warnings;
};

Findings checkBeforeRender(const SinkConfig& config, const HostProject& project,
                           const TrackPlan& plan);

}  // namespace velmor::render
