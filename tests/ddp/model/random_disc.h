// Discs drawn by a seed that a set has room for, with what a disc can have.
#pragma once

#include "tests/ddp/model/reference_set.h"

namespace ddp_model {

/// How many discs a comparison takes: `randomDisc` of every number below this.
inline constexpr unsigned kRandomDiscs = 1000;

/// The same disc for the same number.
ModelDisc randomDisc(unsigned number);

}  // namespace ddp_model
