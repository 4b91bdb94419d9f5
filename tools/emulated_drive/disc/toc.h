// Answers of READ TOC/PMA/ATIP (MMC-5 section 6.30), whole, with their header.
#pragma once

#include "tools/emulated_drive/disc/disc.h"

namespace velmor::recorder {

/// Format 0, from track `first` on (AAh: the lead-out alone); empty when there is no such track.
Bytes tocOf(const Disc& disc, uint8_t first, bool msf);
/// Format 1: the last session.
Bytes sessionInformationOf(const Disc& disc, bool msf);
/// Format 2: the Q sub-channel entries of the lead-in.
Bytes fullTocOf(const Disc& disc);
/// Format 4: what the blank disc says of itself.
Bytes atipOf(const Disc& disc);
/// Format 5: the CD-TEXT packs.
Bytes cdTextOf(const Disc& disc);

}  // namespace velmor::recorder
