// Reads any cue sheet, whoever wrote it and whatever is wrong with it.
#pragma once

#include <string_view>

#include "disc/sheet/sheet.h"

namespace velmor::disc {

/// Any bytes make a sheet, at worst an empty one with problems. Time and memory grow with the
/// length of `bytes` and no faster. Throws nothing but `std::bad_alloc`.
Sheet parseSheet(std::string_view bytes);

}  // namespace velmor::disc
