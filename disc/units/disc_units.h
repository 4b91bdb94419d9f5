// The units of a compact disc's audio (Red Book, IEC 60908).
#pragma once

#include <cstdint>

namespace velmor::disc {

inline constexpr int kSampleRate = 44100;     ///< frames a second
inline constexpr int kFramesPerSector = 588;  ///< a frame is one sample of each of two channels
inline constexpr int kSectorsPerSecond = 75;
inline constexpr int kBytesPerFrame = 4;  ///< two channels of 16 bits
inline constexpr int kBytesPerSector = 2352;

static_assert(kFramesPerSector * kSectorsPerSecond == kSampleRate);
static_assert(kFramesPerSector * kBytesPerFrame == kBytesPerSector);

/// The seconds that `frames` last.
constexpr double secondsOf(int64_t frames) {
  return static_cast<double>(frames) / kSampleRate;
}

}  // namespace velmor::disc
