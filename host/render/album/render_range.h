// The part of the timeline that is rendered.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "abi/sink_registration.h"
#include "host/render/input/marks/mark.h"

namespace velmor::render {

/// The marks of a range of the timeline (both ascending; the range in frames, not empty), moved so
/// that the range starts at 0 and rounded to whole frames, so that where a track begins does not
/// depend on how the render is cut into blocks. The marker in force at the range's start moves to
/// it, and the tags behind that marker with it, so that track 1 keeps its name; regions are cut to
/// the range, and in regions mode the tags of the one that is cut at the start move with it. The
/// others are added to `left_out`, with their times of the timeline.
std::vector<Mark> marksInRange(std::vector<Mark> marks, int64_t start, int64_t end, TrackMode mode,
                               bool hash_only, std::vector<Mark>& left_out);

/// Takes out of `marks` the regions that hold no audio of their own, and answers them: empty ones,
/// and those that lie wholly in the ones before. For such a region the module would write the audio
/// that follows it.
std::vector<Mark> takeEmptyRegions(std::vector<Mark>& marks);

}  // namespace velmor::render
