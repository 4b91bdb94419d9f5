// CD-TEXT as it lies in the lead-in: the packs repeat in the R to W sub-channels, four packs a
// sector, six bits in every byte the host sends (MMC-3 annex J). How many packs the
// programs' texts take is counted in disc/cd_text/text_packs.h, apart from this on purpose.
#pragma once

#include <vector>

#include "tools/emulated_drive/disc/emulated_disc.h"

namespace velmor::emulated_drive {

inline constexpr std::size_t kLeadInBlockBytes = 96;

/// Collects the packs of one lead-in while it is written.
class CdTextLeadIn {
 public:
  /// `blocks` is a whole number of 96-byte blocks. Packs whose check sum is wrong are dropped, as a
  /// player drops them.
  void take(ByteView blocks);
  /// One round of the repeating sequence, in its order.
  [[nodiscard]] const std::vector<CdTextPack>& packs() const { return m_packs; }

 private:
  void takePack(const CdTextPack& pack);

  std::vector<CdTextPack> m_packs;
  bool m_wrapped = false;
};

/// The CRC of a pack's first 16 bytes: polynomial x^16 + x^12 + x^5 + 1, stored inverted.
uint16_t packCheckSum(const uint8_t* pack);

}  // namespace velmor::emulated_drive
