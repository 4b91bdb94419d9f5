// What a function's first instructions do to the stack, read from its machine code.
#pragma once

#include <cstddef>

#include "tools/mac/macho/unwind_info.h"

namespace mac {

/// Where the function keeps its caller's frame once its frame is set up. Throws
/// `std::runtime_error` for code that sets up a frame in a way of which nothing is known here.
macho::FrameLayout frameThatPrologueBuilds(macho::Processor processor, const char* code,
                                           size_t size);

}  // namespace mac
