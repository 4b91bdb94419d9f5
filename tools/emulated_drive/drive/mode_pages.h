// The mode pages of the drive: 01 error recovery, 05 write parameters, 2A capabilities (MMC-5
// section 7).
#pragma once

#include <optional>
#include <variant>

#include "tools/emulated_drive/disc/bytes.h"
#include "tools/emulated_drive/drive/sense_data.h"

namespace velmor::emulated_drive {

inline constexpr uint8_t kSessionAtOnce = 2;
/// Of writing and reading, kB/s: 48, 32, 16, 8 and 4 times.
inline constexpr uint16_t kSpeeds[] = {8467, 5645, 2822, 1411, 706};

class ModePages {
 public:
  ModePages();

  /// The pages MODE SENSE asks for, without header. `control`: 0 current, 1 changeable, 2 default.
  [[nodiscard]] std::variant<ByteBuffer, SenseData> sense(uint8_t page, uint8_t control) const;
  /// Takes what follows the header in MODE SELECT's data. A refused list changes nothing.
  std::optional<SenseData> select(ByteView pages);

  [[nodiscard]] uint8_t writeType() const;
  [[nodiscard]] bool testWrite() const;

 private:
  ByteBuffer m_recovery;
  ByteBuffer m_write;
};

}  // namespace velmor::emulated_drive
