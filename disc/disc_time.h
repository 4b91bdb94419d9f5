// Times of a disc as people write them.
#pragma once

#include <cstdint>
#include <string>

namespace velmor::render {

inline constexpr int kFramesPerSecond = 44100;
inline constexpr int kFramesPerSector = 588;
inline constexpr int kSectorsPerSecond = 75;
inline constexpr int kBytesPerFrame = 4;

inline double secondsOf(int64_t frames) {
  return static_cast<double>(frames) / kFramesPerSecond;
}

/// MM:SS:FF of a sector counted from the image's first one.
std::string msfOf(int64_t sector);

/// M:SS.mmm, or H:MM:SS.mmm from an hour on.
std::string clockTime(double seconds);

/// "1 file", "3 files".
std::string counted(int64_t count, const std::string& noun);

}  // namespace velmor::render
