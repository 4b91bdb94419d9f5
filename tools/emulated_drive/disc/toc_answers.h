// Answers of READ TOC/PMA/ATIP (MMC-5 section 6.30), whole, with their header. Formats 0 to 2
// describe a closed session: the disc has tracks.
#pragma once

#include "tools/emulated_drive/disc/emulated_disc.h"

namespace velmor::emulated_drive {

/// Format 0, from track `first` on (AAh: the lead-out alone); empty when there is no such track.
ByteBuffer tocOf(const EmulatedDisc& disc, uint8_t first, bool msf);
/// Format 1: the last session.
ByteBuffer sessionInformationOf(const EmulatedDisc& disc, bool msf);
/// Format 2: the Q sub-channel entries of the lead-in.
ByteBuffer fullTocOf(const EmulatedDisc& disc);
/// Format 4: what the blank disc says of itself.
ByteBuffer atipOf(const EmulatedDisc& disc);
/// Format 5: the CD-TEXT packs.
ByteBuffer cdTextOf(const EmulatedDisc& disc);

}  // namespace velmor::emulated_drive
