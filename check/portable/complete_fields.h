// The fields of CD-TEXT that a disc has for every track or for none.
#pragma once

#include "disc/portable/portable_disc.h"

namespace velmor::check {

/// The packs of a field come for every track or for none, and cdrdao writes no CD-TEXT that has
/// titles and no performers, or the other way round: adds what is missing, and says so in
/// `changes`.
void completeFields(disc::PortableDisc& made);

}  // namespace velmor::check
