// Numbers in command blocks and their data: most significant byte first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velmor::emulated_drive {

using ByteBuffer = std::vector<uint8_t>;
using ByteView = std::span<const uint8_t>;

inline uint16_t loadBig16(const uint8_t* from) {
  return static_cast<uint16_t>(from[0] << 8 | from[1]);
}
inline uint32_t loadBig24(const uint8_t* from) {
  return static_cast<uint32_t>(from[0]) << 16 | static_cast<uint32_t>(from[1]) << 8 | from[2];
}
inline uint32_t loadBig32(const uint8_t* from) {
  return static_cast<uint32_t>(loadBig16(from)) << 16 | loadBig16(from + 2);
}
inline void storeBig16(uint8_t* to, uint16_t value) {
  to[0] = static_cast<uint8_t>(value >> 8);
  to[1] = static_cast<uint8_t>(value);
}
inline void storeBig32(uint8_t* to, uint32_t value) {
  storeBig16(to, static_cast<uint16_t>(value >> 16));
  storeBig16(to + 2, static_cast<uint16_t>(value));
}

}  // namespace velmor::emulated_drive
