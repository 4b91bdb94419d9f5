#include "tools/emulated_drive/disc/cd_text_lead_in.h"

#include <cassert>

#include "tools/emulated_drive/disc/crc16.h"

namespace velmor::emulated_drive {

namespace {
constexpr std::size_t kSymbolsPerPack = 24;
constexpr std::size_t kCheckedBytes = kPackBytes - 2;

CdTextPack packFrom(const uint8_t* symbols) {
  CdTextPack pack{};
  for (std::size_t i = 0, out = 0; i < kSymbolsPerPack; i += 4) {
    const uint32_t bits = (symbols[i] & 0x3Fu) << 18 | (symbols[i + 1] & 0x3Fu) << 12 |
                          (symbols[i + 2] & 0x3Fu) << 6 | (symbols[i + 3] & 0x3Fu);
    pack[out++] = static_cast<uint8_t>(bits >> 16);
    pack[out++] = static_cast<uint8_t>(bits >> 8);
    pack[out++] = static_cast<uint8_t>(bits);
  }
  return pack;
}

}  // namespace

uint16_t packCheckSum(const uint8_t* pack) {
  return invertedCrc16({pack, kCheckedBytes});
}

void CdTextLeadIn::take(ByteView blocks) {
  assert(blocks.size() % kLeadInBlockBytes == 0);
  for (std::size_t at = 0; at + kSymbolsPerPack <= blocks.size(); at += kSymbolsPerPack) {
    takePack(packFrom(blocks.data() + at));
  }
}

void CdTextLeadIn::takePack(const CdTextPack& pack) {
  if (pack == CdTextPack{}) {
    return;  // sub-channel padding carries no pack
  }
  if (loadBig16(&pack[kCheckedBytes]) != packCheckSum(pack.data())) {
    return;
  }
  m_wrapped = m_wrapped || (!m_packs.empty() && pack == m_packs.front());
  if (!m_wrapped) {
    m_packs.push_back(pack);
  }
}

}  // namespace velmor::emulated_drive
