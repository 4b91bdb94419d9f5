// The module's own answer to a render, to compare the host's predictions with.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "abi/sink_registration.h"
#include "host/render/input/audio_input.h"

namespace velmor::render::test {

struct ModuleRender {
  std::vector<std::string> titles;   ///< of each track, empty where the sheet has none
  std::vector<std::string> indexes;  ///< INDEX 01 of each track, as the sheet has it
  std::vector<std::string> gaps;     ///< INDEX 00 likewise, empty where the sheet has none
  std::vector<std::string> isrcs;    ///< likewise
  std::vector<int16_t> left;         ///< the image's left channel
  int64_t image_bytes = 0;
  double seconds = 0.0;  ///< what the sink says of its length
};

/// Frame `i` of what `renderThroughModule` plays: never silent, and telling its place.
int16_t sampleAt(int64_t frame);

/// Renders `frames` frames through the module with `marks` as the project's.
ModuleRender renderThroughModule(const SinkConfig& config, const std::vector<Mark>& marks,
                                 int64_t frames, int block);

/// The sheet's time of `seconds`: milliseconds first, then sectors, both truncated.
std::string sheetTime(double seconds);

}  // namespace velmor::render::test
