// Which marks make the tracks when the user did not say.
#pragma once

#include <string>
#include <vector>

#include "abi/sink_registration.h"
#include "host/render/input/marks/mark.h"

namespace velmor::render {

/// Regions where ranges are the only marks that could make tracks, otherwise markers. Adds a
/// warning where that leaves something out, with the option that keeps it.
TrackMode modeFor(const std::vector<Mark>& given, std::vector<std::string>& warnings);

}  // namespace velmor::render
