// Renders made from a seed: settings, project, file name and the way the host hands over its audio.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/module/model/reference_model.h"

namespace model {

/// One call of `WriteDoubles`. Channel c begins `phases[c]` samples into the pool.
struct Block {
  int frames = 0;
  int channels = 2;
  int offset = 0;
  int spacing = 1;
  std::vector<size_t> phases;
};

struct RandomRender {
  SinkConfig config{};
  int config_length = 24;  ///< bytes given to the sink; the blob in memory is longer
  std::string file_name;   ///< in the folder of the render
  Project project;
  double start_time = 0.0;
  std::vector<Block> blocks;
  bool finishes = true;  ///< false: aborted

  /// The configuration that the blob's length leaves in force.
  SinkConfig effectiveConfig() const;
};

RandomRender makeRandomRender(uint64_t seed);

/// The samples that all renders draw from: noise, corners of the 16-bit range, overs and NaN.
const std::vector<double>& samplePool();

/// The channels of a block, as a host's array of pointers into the pool.
std::vector<double*> channelsOf(const Block& block);

}  // namespace model
