// A sheet whose times were cut, with the starts that its render knows.
#pragma once

#include "check/portable/make_portable.h"
#include "disc/sheet/sheet.h"

namespace velmor::check {

/// Moves each track of `sheet`, whose image `exact` speaks of, to the sector in which it truly
/// starts. INDEX 00 keeps its distance to INDEX 01, but for the one at the image's first sector and
/// for one that `exact` places.
/// Does nothing when `exact` has another number of tracks.
void moveStarts(disc::Sheet& sheet, const ExactStarts& exact);

}  // namespace velmor::check
