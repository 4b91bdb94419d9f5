// The portable sheet as text.
#pragma once

#include <string>

#include "disc/portable/portable_disc.h"

namespace velmor::disc {

/// The cue sheet: CRLF, texts quoted, CATALOG and ISRC bare. Every track of `disc` has an
/// index, and every index names one of its files.
std::string cueText(const PortableDisc& disc);

}  // namespace velmor::disc
