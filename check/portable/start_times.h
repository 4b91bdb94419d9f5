// The sectors at which tracks truly start, as far as sheet and image can tell.
#pragma once

#include <string>
#include <vector>

#include "check/portable/make_portable.h"
#include "disc/portable/portable_disc.h"

namespace velmor::check {

/// Moves INDEX 00 and 01 of `tracks`, which are those of `disc.sheet` and have an INDEX 01 each, to
/// where the tracks truly start, and says so in `changes`.
///
/// Known starts: INDEX 01 becomes the sector in which the start lies, and INDEX 00 the one that is
/// given with it.
///
/// From the image: a sheet whose times were truncated shows a sector boundary n/75 s as n - 1 when
/// n is not divisible by 3. Such an index is moved one sector later only where the image proves
/// it harmless and likely: the track has a lead-in, the sector it names is digital silence, and so
/// is the one before, and the next one holds sound. Nothing but silence changes sides then. Where
/// the next sector is silent as well the image tells nothing and the time stays.
void placeStarts(const Disc& disc, const ExactStarts& exact, std::vector<disc::PlainTrack>& tracks,
                 std::vector<std::string>& changes);

}  // namespace velmor::check
