// One render: the album streamed through the module's sink.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "abi/sink_registration.h"
#include "disc/failure.h"
#include "disc/terminal/interrupt.h"
#include "host/render/album/album.h"
#include "host/render/module/read_ahead.h"
#include "host/render/options/options.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

/// The result of a render that ended well.
struct RenderOutcome {
  std::vector<InputOutcome> inputs;  ///< those that were read, in order
  int64_t counted_frames = 0;        ///< the image's, as the sink counts them
};

/// Streams `album`, as `plan` lays it out, to a sink of the module that writes `sheet_path` and the
/// image beside it, and finishes it. Throws `Failure` or `Interrupted`; the sink is gone
/// then as well.
RenderOutcome renderAlbum(const SinkRegistration& module, const SinkConfig& config,
                          const Album& album, const TrackPlan& plan, const Options& options,
                          const std::string& sheet_path);

}  // namespace velmor::render
