// The units of a compact disc.
#pragma once

#include <cstdint>
#include <string>

namespace velmor::check {

inline constexpr int64_t kSectorBytes = 2352;  ///< 588 stereo frames, 1/75 second
inline constexpr int64_t kSectorFrames = 588;  ///< stereo sample pairs
inline constexpr int64_t kSecondSectors = 75;
inline constexpr int64_t kFrameBytes = 4;
inline constexpr int64_t kShortestTrack = 300;  ///< sectors, 4 s (IEC 60908)

/// "MM:SS:FF" of a count of sectors; three-digit minutes stay whole.
std::string msfText(int64_t sectors);

}  // namespace velmor::check
