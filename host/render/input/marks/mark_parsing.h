// Times, markers and regions as they are written on the command line.
#pragma once

#include <string_view>

#include "disc/failure.h"
#include "host/render/input/marks/mark.h"

namespace velmor::render {

/// A time as seconds ("12.5"), MM:SS.mmm or MM:SS:FF (75 frames a second), never negative. Throws
/// `Failure`.
double parseTime(std::string_view text);
/// TIME=NAME. Throws `Failure`.
Mark parseMarkerOption(std::string_view text);
/// START-END=NAME. Throws `Failure`.
Mark parseRegionOption(std::string_view text);

}  // namespace velmor::render
