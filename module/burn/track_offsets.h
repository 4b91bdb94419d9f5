// Where tracks begin in the image, in bytes.
#pragma once

#include <cassert>

#include "module/support/cd_units.h"
#include "module/support/wrapping.h"

/// The byte offset of the sector that holds image time `seconds` (0 or more), in 32 bits that wrap.
constexpr int trackByteOffset(double seconds) {
  assert(seconds >= 0.0);
  const auto frames = static_cast<int32_t>(static_cast<uint32_t>(framesIn(seconds)));
  const int32_t bytes = wrappingMultiply(frames, kFrameBytes);
  return bytes - bytes % kSectorBytes;
}
