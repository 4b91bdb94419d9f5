// Positions and lengths on an audio disc.
#pragma once

#include <cstdint>
#include <string>

namespace velmor::recording {

inline constexpr int kSectorBytes = 2352;
inline constexpr int kSectorsPerSecond = 75;
inline constexpr int kMinTrackSectors = 4 * kSectorsPerSecond;  ///< Red Book: 4 seconds
inline constexpr int kMaxTracks = 99;                           ///< Red Book
inline constexpr int kLeadInPregap = 150;  ///< sectors before track 1 that no image contains

/// The highest LBA a lead-out may begin at: 89:59:74 in the disc's own time, which counts the
/// pregap of track 1.
inline constexpr int64_t kLastLeadOut = 90 * 60 * kSectorsPerSecond - 1 - kLeadInPregap;

/// MM:SS:FF of a sector count; minutes may have more than two digits. `sectors` is not negative.
std::string minutesSecondsFrames(int64_t sectors);

}  // namespace velmor::recording
