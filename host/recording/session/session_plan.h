// Where every track of a burn will lie, and whether a disc may be written so.
#pragma once

#include <cstdint>
#include <vector>

#include "abi/disc_recording.h"
#include "disc/failure.h"

namespace velmor::recording {

struct SessionTrack {
  int pregap = 0;     ///< sectors from INDEX 00 to INDEX 01
  int sectors = 0;    ///< from INDEX 01 on
  int64_t start = 0;  ///< LBA of INDEX 01
};

/// A stretch of the disc's audio. The tracks may be cut elsewhere than the stretches.
struct AudioSource {
  DiscTrackProducer* producer = nullptr;
  int pregap = 0;     ///< sectors that `ProducePreGap` fills, before the others
  int sectors = 0;    ///< that `ProduceData` fills
  int64_t begin = 0;  ///< LBA of the first
};

struct SessionPlan {
  std::vector<SessionTrack> tracks;
  std::vector<AudioSource> sources;  ///< in the order of the disc, without a gap
  int64_t sectors = 0;               ///< of all tracks with their pregaps; LBA of the lead-out

  /// The track (from 0) that sector `lba` belongs to; its pregap counts as its own. What lies
  /// before the first track belongs to that, what lies behind the last one to that one.
  int trackAt(int64_t lba) const;
  /// The source that fills sector `lba`, which lies on the tracks.
  const AudioSource& sourceAt(int64_t lba) const;
};

/// Lays out `count` tracks, each with its own producer's audio. Throws `Failure` when they would
/// make no audio disc, or when libburn would write them differently from how they were handed over.
SessionPlan planSession(const DiscTrack* tracks, int count);

}  // namespace velmor::recording
