// The sheet and the image of a render once the sink has closed them.
#pragma once

#include <cstdint>
#include <string>

#include "disc/failure.h"
#include "host/render/album/host_project.h"
#include "host/render/output/cue_text.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

struct FinishedFiles {
  CueText sheet;
  uint64_t sheet_bytes = 0;
  uint64_t image_bytes = 0;
};

/// Looks at the finished files. Throws `Failure` unless they are whole: an image of exactly the
/// planned length, which is also what the sink has counted (a last write that failed is reported
/// nowhere else), and a sheet of all tracks to its last line, with a text wherever `project` has
/// one. `counted_frames`: the sink's length.
FinishedFiles readFinishedFiles(const std::string& sheet_path, const std::string& image_path,
                                const HostProject& project, const TrackPlan& plan,
                                int64_t counted_frames);

}  // namespace velmor::render
