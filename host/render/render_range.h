// The part of the timeline that is rendered.
#pragma once

#include <vector>

#include "host/render/input/audio_input.h"

namespace velmor::render {

/// The marks of a range of the timeline (seconds, ascending), moved so that the range starts at 0.
/// The marker in force at the range's start moves to it, and the tags behind that marker with it,
/// so that track 1 keeps its name; regions are cut to the range.
std::vector<Mark> marksInRange(std::vector<Mark> marks, double start, double end, bool hash_only);

}  // namespace velmor::render
