// The check sum of Q sub-channel frames and CD-TEXT packs (IEC 60908): CCITT polynomial, start 0.
#pragma once

#include "tools/emulated_drive/disc/bytes.h"

namespace velmor::emulated_drive {

/// With all bits inverted, as it is stored on the disc.
inline uint16_t invertedCrc16(ByteView bytes) {
  uint32_t crc = 0;
  for (const uint8_t byte : bytes) {
    crc ^= static_cast<uint32_t>(byte) << 8;
    for (int bit = 0; bit < 8; ++bit) {
      crc = (crc & 0x8000) != 0 ? crc << 1 ^ 0x1021 : crc << 1;
    }
  }
  return static_cast<uint16_t>(~crc);
}

}  // namespace velmor::emulated_drive
