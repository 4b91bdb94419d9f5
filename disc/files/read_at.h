// Reading at a place of an open file.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmor::disc {

/// Reads `count` bytes from `offset` on, whatever the descriptor's position is; returns fewer at
/// the file's end or at a read error.
size_t readAt(int descriptor, int64_t offset, void* to, size_t count);

}  // namespace velmor::disc
