// How the two channels of a sector compare.
#pragma once

#include <cstdint>

namespace velmor::check {

/// Samples up to this far from zero count as none: dither and rounding leave that much where a
/// channel was silent, or where both were the same.
inline constexpr int kResidue = 2;

struct Channels {
  bool left_silent = false;   ///< no sample beyond the residue
  bool right_silent = false;  ///< likewise
  bool same = false;          ///< no two samples of a frame differ by more than the residue
};

/// `samples` holds one sector. Nearly every sector of stereo music is told by its first frame.
Channels channelsOf(const int16_t* samples);

}  // namespace velmor::check
