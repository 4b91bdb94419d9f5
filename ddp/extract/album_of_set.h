// A set as the sheet that it could have been written from.
#pragma once

#include <cstdint>
#include <string>

#include "ddp/check/checked_set.h"
#include "disc/portable/portable_disc.h"

namespace velmor::ddp {

/// The sheet's contents for an image named `image`, which lacks the set's first `left_out` sectors.
/// The portable form (disc/portable), but with texts as they are, in UTF-8, so that the set can be
/// written from it again; what cannot be kept becomes a sentence in `changes`.
disc::PortableDisc albumOfSet(const CheckedSet& set, const std::string& image, int64_t left_out);

}  // namespace velmor::ddp
