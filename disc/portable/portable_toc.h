// The portable disc as cdrdao's table of contents.
#pragma once

#include <string>

#include "disc/failure.h"
#include "disc/portable/portable_disc.h"

namespace velmor::disc {

/// The table of contents; byte order as the FILE's type says. Every track of `disc` has an index,
/// and every index names one of its files. Throws `Failure` for what a TOC cannot say: a track that
/// is not audio, one that goes on in a second file of unknown length, an image that cdrdao would
/// take for another.
std::string tocText(const PortableDisc& disc);

}  // namespace velmor::disc
