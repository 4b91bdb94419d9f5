// The Q sub-channel of a recorded sector, as players follow it (IEC 60908, mode 1).
#pragma once

#include "tools/emulated_drive/disc/emulated_disc.h"

namespace velmor::emulated_drive {

/// P of a sector, where READ CD's formatted Q carries it: set in a pregap.
inline constexpr uint8_t kPauseFlag = 0x80;

/// Sixteen bytes: control and ADR, track, index, time in the track, zero, absolute time (all
/// binary-coded decimal), check sum, padding, and the P sub-channel's flag in the last byte. `lba`
/// lies on the disc's tracks or in its lead-out.
std::array<uint8_t, 16> qFrameOf(const EmulatedDisc& disc, int32_t lba);

}  // namespace velmor::emulated_drive
