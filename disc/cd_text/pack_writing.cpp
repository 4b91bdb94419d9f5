#include "disc/cd_text/pack_writing.h"

#include <algorithm>
#include <cassert>

#include "disc/cd_text/text_packs.h"

namespace velmor::disc {

namespace {

/// The language English by EBU Tech 3264, which players expect with ISO 8859-1.
constexpr uint8_t kEnglish = 0x09;

class PackWriter {
 public:
  std::string run(const DiscTexts& texts) {
    for (size_t kind = 0; kind < kTextKinds; ++kind)
      if (texts.blocks[kind].present())
        addKind(packType(static_cast<TextKind>(kind)), texts.blocks[kind]);
    if (m_bytes.empty()) return {};
    addSizes(texts);
    return std::move(m_bytes);
  }

 private:
  void addKind(uint8_t type, const TextBlock& block) {
    addText(type, 0, block.disc);
    for (size_t t = 0; t < block.tracks.size(); ++t) addText(type, t + 1, block.tracks[t]);
    if (m_payload.empty()) return;
    m_payload.resize(kTextPackBytes, '\0');
    finishPack(type);
  }

  void addText(uint8_t type, size_t number, const std::string& text) {
    assert(text.find('\0') == std::string::npos);
    for (size_t place = 0; place <= text.size(); ++place) {
      if (m_payload.empty()) startPack(number, place);
      m_payload += place < text.size() ? text[place] : '\0';
      if (m_payload.size() == kTextPackBytes) finishPack(type);
    }
  }

  void startPack(size_t number, size_t place) {
    m_number = static_cast<uint8_t>(number);
    m_place = static_cast<uint8_t>(std::min(place, kMostPlace));
  }

  void finishPack(uint8_t type) {
    assert(m_packs < 256);
    std::string pack{static_cast<char>(type), static_cast<char>(m_number),
                     static_cast<char>(m_packs), static_cast<char>(m_place)};
    pack += m_payload;
    const uint16_t sum = packCheckSum(pack);
    pack += static_cast<char>(sum >> 8);
    pack += static_cast<char>(sum & 0xFF);
    m_bytes += pack;
    m_payload.clear();
    ++m_packs;
    ++m_sizes.packs[type - kFirstPackType];
  }

  void addSizes(const DiscTexts& texts) {
    m_sizes.last_track = static_cast<uint8_t>(texts.tracks());
    m_sizes.packs[kSizePackType - kFirstPackType] = kSizePacks;
    m_sizes.last_of_block[0] = static_cast<uint8_t>(m_packs + kSizePacks - 1);
    m_sizes.language[0] = kEnglish;
    const std::string payload = payloadOf(m_sizes);
    for (size_t part = 0; part < kSizePacks; ++part) {
      startPack(part, 0);
      m_payload = payload.substr(part * kTextPackBytes, kTextPackBytes);
      finishPack(kSizePackType);
    }
  }

  static std::string payloadOf(const BlockSizes& sizes) {
    std::string payload{static_cast<char>(sizes.character_set),
                        static_cast<char>(sizes.first_track), static_cast<char>(sizes.last_track),
                        static_cast<char>(sizes.copyright)};
    const auto add = [&payload](const auto& bytes) { payload.append(bytes.begin(), bytes.end()); };
    add(sizes.packs);
    add(sizes.last_of_block);
    add(sizes.language);
    return payload;
  }

  std::string m_bytes;    ///< of whole packs
  std::string m_payload;  ///< of the pack that is being filled
  uint8_t m_number = 0, m_place = 0;
  int m_packs = 0;
  BlockSizes m_sizes;
};

}  // namespace

std::string packBytes(const DiscTexts& texts) {
  return PackWriter().run(texts);
}

}  // namespace velmor::disc
