// Whether the two bytes of the samples stand the other way round than the sheet says.
#pragma once

#include <cstdint>

#include "check/image/image_file.h"

namespace velmor::check {

/// Looks at pieces of the sectors from `first` up to `end` (not included) of a readable image. Read
/// in the wrong order music is noise, and becomes music when its bytes are swapped; true when that
/// is so. What is noise either way, or silent, tells nothing.
bool bytesLookSwapped(const ImageFile& image, int64_t first, int64_t end);

}  // namespace velmor::check
