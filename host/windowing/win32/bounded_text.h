// Text into a caller's buffer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "disc/text/utf8.h"

namespace velmor::windowing {

/// Copies what fits into `size` bytes with the terminating zero, never a part of a UTF-8 character.
/// The number of bytes copied, the zero not counted; 0 without a buffer.
inline intptr_t copyBounded(std::string_view text, char* buffer, intptr_t size) {
  if (buffer == nullptr || size <= 0) {
    return 0;
  }
  const std::string_view fit = disc::beginningOf(text, static_cast<size_t>(size) - 1);
  fit.copy(buffer, fit.size());
  buffer[fit.size()] = '\0';
  return static_cast<intptr_t>(fit.size());
}

}  // namespace velmor::windowing
