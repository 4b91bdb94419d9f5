// A stretch of silence that a cue sheet gives to its audio.
#pragma once

#include <cstdint>
#include <limits>

namespace velmor::render {

/// Frames of silence in front of frame `at` of an input at the disc's rate.
struct Silence {
  int64_t at = 0;
  int64_t frames = 0;
};

/// Where an input ends, whatever its length.
inline constexpr int64_t kAtTheEnd = std::numeric_limits<int64_t>::max();

}  // namespace velmor::render
