// CD-TEXT packs as the texts they hold.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tools/emulated_drive/disc/emulated_disc.h"

namespace velmor::emulated_drive {

/// Of block 0, by pack type (80h title, 81h performer, …) and track (0: the disc), as UTF-8. Texts
/// are taken as ISO 8859-1; a lone tab repeats the text of the track before.
std::map<std::pair<uint8_t, int>, std::string> cdTextsOf(const std::vector<CdTextPack>& packs);

/// "title", "performer", …; empty for packs that hold no text.
std::string cdTextName(uint8_t pack_type);

}  // namespace velmor::emulated_drive
