// The units of an audio CD, and how times become frames and bytes.
//
// The module's own: the programs have theirs in disc/units/, and share nothing with the module that
// they check.
#pragma once

#include <cassert>
#include <cstdint>
#include <limits>

inline constexpr int kSampleRate = 44100;  ///< frames a second (Red Book)
inline constexpr int kFrameBytes = 4;      ///< one 16-bit sample pair
inline constexpr int kSectorBytes = 2352;  ///< 588 frames, 1/75 second (Red Book)
inline constexpr int kBytesPerSecond = 176400;
inline constexpr double kShortestTrack = 4.0;  ///< seconds (Red Book)

/// `value` without its fraction; what 64 bits cannot hold saturates. Not for NaN.
constexpr int64_t wholePart(double value) {
  constexpr double kEdge = 9223372036854775808.0;  // 2^63
  assert(value < kEdge || value >= kEdge);
  if (value >= kEdge) return std::numeric_limits<int64_t>::max();
  if (value < -kEdge) return std::numeric_limits<int64_t>::min();
  return static_cast<int64_t>(value);
}

/// Frames in `seconds`, half a frame rounded up (towards zero below it). Not for NaN.
constexpr int64_t framesIn(double seconds) {
  return wholePart(seconds * kSampleRate + 0.5);
}

/// Bytes of a silence of `ms` milliseconds (0 or more), truncated; at most the largest number of
/// whole sectors that an int can count.
constexpr int silenceBytes(int ms) {
  assert(ms >= 0);
  constexpr int64_t kMost = std::numeric_limits<int>::max() / kSectorBytes * kSectorBytes;
  const int64_t bytes = static_cast<int64_t>(ms) * kBytesPerSecond / 1000;
  return static_cast<int>(bytes > std::numeric_limits<int>::max() ? kMost : bytes);
}
