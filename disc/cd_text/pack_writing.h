// CD-TEXT made into packs: for the lead-in of a burn, and for a file that a plant takes.
#pragma once

#include <string>

#include "disc/cd_text/disc_texts.h"

namespace velmor::disc {

/// One language block of packs, 18 bytes each, those of sizes at its end; empty when the disc has
/// no text at all. Every text of a kind is written out, none is abbreviated as that of the track
/// before. `texts` takes at most `kMostTextPacks` (`textPacks`).
std::string packBytes(const DiscTexts& texts);

}  // namespace velmor::disc
