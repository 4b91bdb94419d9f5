// How the sound on both sides of a point fits together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velmor::check {

/// So many stereo frames on each side are enough to tell.
inline constexpr size_t kJoinFrames = 2048;

enum class Join {
  kRunsOn,         ///< the sound goes on over the point, or begins as sounds do
  kFromSilence,    ///< silence, and behind it sound at its full level from the first sample on
  kBetweenSounds,  ///< one sound breaks off and another one goes on
};

/// `before` and `after` hold the stereo frames up to the point and from it on, left and right in
/// turn: `kJoinFrames` of them each.
Join joinBetween(const std::vector<int16_t>& before, const std::vector<int16_t>& after);

}  // namespace velmor::check
