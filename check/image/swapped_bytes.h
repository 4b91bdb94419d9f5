// A sample with its two bytes the other way round.
#pragma once

#include <cstdint>

namespace velmor::check {

inline int16_t swappedBytes(int16_t sample) {
  const auto raw = static_cast<uint16_t>(sample);
  return static_cast<int16_t>(static_cast<uint16_t>(raw << 8 | raw >> 8));
}

}  // namespace velmor::check
