// The samples around a track's first sector, looked at one by one.
#pragma once

#include <cstdint>

#include "check/image/image_file.h"

namespace velmor::check {

/// What the first sector of a track holds.
struct SectorEdge {
  /// Stereo frames of sound at its start that end in digital silence within the sector: the end of
  /// what came before. 0: it begins silent, or sounds through.
  int64_t tail = 0;
  /// First frame of the sector that is not zero, 588 when it is silent.
  int64_t first_sound = 0;
};

/// So many zero frames in a row are a pause; fewer are a wave that passes through zero.
inline constexpr int64_t kPauseFrames = 32;

/// `image` is readable; `sector` counts from its first one. What lies beyond the image counts as
/// silent.
SectorEdge lookAtSector(const ImageFile& image, int64_t sector);

}  // namespace velmor::check
