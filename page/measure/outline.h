// The shape of a disc's sound: how far it goes up and down in each sector, and what each track's
// samples have in common.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "page/album/page_disc.h"

namespace velmor::page {

/// The lowest and the highest sample of a sector, of both channels.
struct Swing {
  int16_t low = 0, high = 0;
};

struct TrackOutline {
  int64_t frames = 0;
  int64_t silent_at_start = 0;  ///< frames of digital silence; all of them in a silent track
  int64_t silent_at_end = 0;    ///< likewise
  int peak = 0;                 ///< the largest sample, 0 to 32768
  double offset_left = 0.0;     ///< mean of the samples, of full scale 1.0
  double offset_right = 0.0;

  bool silent() const { return peak == 0; }
};

struct Outline {
  int64_t begin = 0;                                ///< sector of the first one
  std::vector<Swing> swings;                        ///< a sector each
  std::vector<std::optional<TrackOutline>> tracks;  ///< of each track; nothing: it has no audio
  bool broke_off = false;                           ///< an image could not be read to its end

  int64_t end() const { return begin + static_cast<int64_t>(swings.size()); }
};

/// A longer disc than any is looked at no further.
inline constexpr int64_t kMostSectors = disc::kLongestTimeSectors + disc::kSectorsBeforeTrack1;

/// Does the track have audio that can be looked at?
bool isMeasured(const PageDisc& disc, size_t track);

/// Told of sectors done, since the last time. May throw, which ends the work.
using SectorsDone = std::function<void(int64_t sectors)>;

/// Reads all of the disc once.
Outline outlineOf(const PageDisc& disc, const SectorsDone& progress);

}  // namespace velmor::page
