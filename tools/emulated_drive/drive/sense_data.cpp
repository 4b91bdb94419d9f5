#include "tools/emulated_drive/drive/sense_data.h"

#include "tools/emulated_drive/disc/bytes.h"

namespace velmor::emulated_drive {

std::array<uint8_t, kSenseBytes> senseBytes(const SenseData& sense) {
  std::array<uint8_t, kSenseBytes> bytes{};
  bytes[0] = 0x70;
  bytes[2] = sense.key;
  if (sense.sector) {
    bytes[0] |= 0x80;  // the information field is valid
    storeBig32(&bytes[3], static_cast<uint32_t>(*sense.sector));
  }
  bytes[7] = kSenseBytes - 8;
  bytes[12] = sense.code;
  bytes[13] = sense.qualifier;
  if (sense.progress) {
    bytes[15] = 0x80;  // sense key specific bytes are valid
    storeBig16(&bytes[16], *sense.progress);
  }
  return bytes;
}

}  // namespace velmor::emulated_drive
