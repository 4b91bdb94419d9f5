// The pauses of an input's sheet that the module's lead-ins can make.
#pragma once

#include <vector>

#include "disc/failure.h"
#include "host/render/input/audio_input.h"

namespace velmor::render {

/// Milliseconds of silence that the module puts before track 1, and before each other track.
struct LeadIns {
  int disc_ms = 0;
  int track_ms = 0;
};

/// Where the pauses of `infos`, the files of one sheet in their order, are digital silence of whole
/// seconds, before each track but the first equally long, cuts them out of the audio and answers
/// the lead-ins by which the module puts them back: then its own sheet has them too. The same for
/// the pause of track 1, by itself. Reads the audio where it takes that to know; throws `Failure`.
LeadIns takeLeadIns(std::vector<InputInfo>& infos);

}  // namespace velmor::render
