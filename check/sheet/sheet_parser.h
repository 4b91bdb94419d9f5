// Reads any cue sheet, whoever wrote it and whatever is wrong with it.
#pragma once

#include <string_view>

#include "check/sheet/sheet.h"

namespace velmor::check {

/// Any bytes make a sheet, at worst an empty one with problems. Time and memory grow with the
/// length of `bytes` and no faster. Throws nothing but `std::bad_alloc`.
Sheet parse(std::string_view bytes);

}  // namespace velmor::check
