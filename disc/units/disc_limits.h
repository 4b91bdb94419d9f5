// What fits on a compact disc. The module has the four-second rule a second time, since it shares
// no code with the programs, and `host/render/plan` predicts the module's use of it.
#pragma once

#include <cstdint>

#include "disc/units/disc_units.h"

namespace velmor::disc {

/// Sectors of a time in minutes and seconds.
constexpr int64_t sectorsOf(int64_t minutes, int64_t seconds) {
  return (minutes * 60 + seconds) * kSectorsPerSecond;
}

inline constexpr int kMostTracks = 99;  ///< Red Book

/// The least that a track lasts, and the least between two starts (Red Book).
inline constexpr int kShortestTrackSeconds = 4;
inline constexpr int kShortestTrackSectors = kShortestTrackSeconds * kSectorsPerSecond;

/// The pause before track 1, which every disc has and no image contains (Red Book).
inline constexpr int kSectorsBeforeTrack1 = 2 * kSectorsPerSecond;

/// What every plant takes, and what the longest common blank holds (Orange Book, ATIP).
inline constexpr int64_t kSectorsOf74Minutes = sectorsOf(74, 0);
inline constexpr int64_t kSectorsOf79Minutes57 = sectorsOf(79, 57);

/// 79:59:74, the most that is counted as an 80-minute disc.
inline constexpr int64_t kLongestDiscSectors = sectorsOf(80, 0) - 1;

/// 99:59:74, the last time that a sheet or a subcode can say.
inline constexpr int64_t kLongestTimeSectors = sectorsOf(100, 0) - 1;

/// The highest sector, counted from the image's first, that a recordable disc can have: 88:29:74 of
/// the disc's own time, which counts the pause before track 1 (Orange Book, ATIP).
inline constexpr int64_t kLastSector = sectorsOf(88, 30) - 1 - kSectorsBeforeTrack1;

/// The highest sector, counted from the image's first, at which a lead-out may begin: 89:59:74 of
/// the disc's own time (MMC-3).
inline constexpr int64_t kLastLeadOut = sectorsOf(90, 0) - 1 - kSectorsBeforeTrack1;

}  // namespace velmor::disc
