// Text into a caller's buffer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velmor::windowing {

/// Copies what fits into `size` bytes with the terminating zero, never a part of a UTF-8 character.
/// The number of bytes copied, the zero not counted; 0 without a buffer.
inline intptr_t copyBounded(std::string_view text, char* buffer, intptr_t size) {
  if (buffer == nullptr || size <= 0) {
    return 0;
  }
  size_t length = text.size();
  if (length >= static_cast<size_t>(size)) {
    length = static_cast<size_t>(size) - 1;
    const auto continues = [&](size_t i) {
      return (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
    };
    while (length > 0 && continues(length)) {
      --length;
    }
  }
  text.copy(buffer, length);
  buffer[length] = '\0';
  return static_cast<intptr_t>(length);
}

}  // namespace velmor::windowing
