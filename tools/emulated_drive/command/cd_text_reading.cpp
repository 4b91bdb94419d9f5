#include "tools/emulated_drive/command/cd_text_reading.h"

namespace velmor::emulated_drive {

namespace {

std::string utf8(uint8_t latin1) {
  if (latin1 < 0x80) {
    return {static_cast<char>(latin1)};
  }
  return {static_cast<char>(0xC0 | latin1 >> 6), static_cast<char>(0x80 | (latin1 & 0x3F))};
}

}  // namespace

std::string cdTextName(uint8_t pack_type) {
  switch (pack_type) {
    case 0x80:
      return "title";
    case 0x81:
      return "performer";
    case 0x82:
      return "songwriter";
    case 0x83:
      return "composer";
    case 0x84:
      return "arranger";
    case 0x85:
      return "message";
    case 0x86:
      return "disc id";
    case 0x8E:
      return "code";
    default:
      return {};
  }
}

std::map<std::pair<uint8_t, int>, std::string> cdTextsOf(const std::vector<CdTextPack>& packs) {
  constexpr std::size_t kTextStart = 4;
  constexpr std::size_t kTextEnd = 16;
  std::map<std::pair<uint8_t, int>, std::string> texts;
  uint8_t type = 0;
  int track = 0;
  std::string text;
  for (const CdTextPack& pack : packs) {
    const bool first_block = (pack[3] >> 4 & 7) == 0;
    const bool double_bytes = (pack[3] & 0x80) != 0;
    if (cdTextName(pack[0]).empty() || !first_block || double_bytes) {
      continue;
    }
    if (pack[0] != type) {  // a new kind of text begins at its own pack
      type = pack[0];
      track = pack[1] & 0x7F;
      text.clear();
    }
    for (std::size_t i = kTextStart; i < kTextEnd; ++i) {
      if (pack[i] != 0) {
        text += utf8(pack[i]);
        continue;
      }
      if (!text.empty()) {
        texts[{type, track}] = text == "\t" ? texts[{type, track - 1}] : text;
      }
      text.clear();
      ++track;
    }
  }
  return texts;
}

}  // namespace velmor::emulated_drive
