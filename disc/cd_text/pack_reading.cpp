#include "disc/cd_text/pack_reading.h"

#include <algorithm>
#include <array>
#include <optional>

#include "disc/text/phrases.h"

namespace velmor::disc {

namespace {

constexpr size_t kHeaderBytes = 4;
/// Stands for the text of the track before it.
constexpr std::string_view kAsBefore = "\t";

uint8_t byteAt(std::string_view bytes, size_t at) {
  return static_cast<uint8_t>(bytes[at]);
}

std::string hexadecimal(unsigned value) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  return {'0', 'x', kDigits[value >> 4 & 15], kDigits[value & 15]};
}

struct Pack {
  uint8_t type, number, sequence, place;  ///< `place`: of its first byte in its text, cut to 15
  uint8_t block;
  bool two_byte;  ///< characters of two bytes
  std::string_view payload;
};

Pack packAt(std::string_view bytes, size_t pack) {
  const std::string_view whole = bytes.substr(pack * kWholePackBytes, kWholePackBytes);
  const uint8_t position = byteAt(whole, 3);
  return {byteAt(whole, 0),
          byteAt(whole, 1),
          byteAt(whole, 2),
          static_cast<uint8_t>(position & 15U),
          static_cast<uint8_t>(position >> 4 & 7U),
          (position & 0x80U) != 0,
          whole.substr(4, kTextPackBytes)};
}

class PackReader {
 public:
  explicit PackReader(std::string_view bytes) : m_bytes(bytes) {}

  ReadPacks run() {
    takeOffExtras();
    m_read.packs = m_bytes.size() / kWholePackBytes;
    for (size_t p = 0; p < m_read.packs; ++p) readPack(p);
    finishKind();
    checkSizes();
    fitToTracks();
    return std::move(m_read);
  }

 private:
  void say(PackTrouble trouble, size_t pack, std::string what) {
    if (m_read.problems.size() < kMostPackProblems)
      m_read.problems.push_back({trouble, pack, std::move(what)});
  }

  void takeOffExtras() {
    const size_t over = m_bytes.size() % kWholePackBytes;
    if (over == kHeaderBytes || over == kHeaderBytes + 1) {
      m_bytes.remove_prefix(kHeaderBytes);
      say(PackTrouble::kOdd, 0, "a header of 4 bytes stands before the packs");
    }
    if (m_bytes.size() % kWholePackBytes == 1 && m_bytes.back() == '\0') {
      m_bytes.remove_suffix(1);
      say(PackTrouble::kOdd, 0, "a stray zero byte stands behind the packs");
    }
    if (const size_t left = m_bytes.size() % kWholePackBytes; left != 0)
      say(PackTrouble::kWrong, 0,
          "the last " + counted(static_cast<int64_t>(left), "byte") + " are no whole pack of " +
              std::to_string(kWholePackBytes));
  }

  void readPack(size_t index) {
    const Pack pack = packAt(m_bytes, index);
    const std::string_view whole = m_bytes.substr(index * kWholePackBytes, kWholePackBytes);
    const auto stored = static_cast<uint16_t>(byteAt(whole, 16) << 8 | byteAt(whole, 17));
    if (packCheckSum(whole.substr(0, 16)) != stored)
      return say(PackTrouble::kWrong, index + 1, "the check sum does not fit the pack");
    if (pack.type < kFirstPackType || pack.type > kSizePackType)
      return say(PackTrouble::kWrong, index + 1,
                 "the pack is of the type " + hexadecimal(pack.type) + ", which is none");
    if (pack.block != 0) {
      if (!m_more_blocks)
        say(PackTrouble::kOdd, index + 1, "a second language begins here and is passed over");
      m_more_blocks = true;
      return;
    }
    checkOrder(pack, index);
    if (pack.type == kSizePackType) return readSizePack(pack, index);
    ++m_counted[pack.type - kFirstPackType];
    const auto kind = kindOf(pack.type);
    if (kind && pack.two_byte)
      return say(PackTrouble::kOdd, index + 1, "characters of two bytes are passed over");
    if (kind) return addPayload(*kind, pack, index);
    if (pack.type != m_passed_over)
      say(PackTrouble::kOdd, index + 1,
          "packs of the type " + hexadecimal(pack.type) + " are passed over");
    m_passed_over = pack.type;
  }

  static std::optional<TextKind> kindOf(uint8_t type) {
    for (size_t kind = 0; kind < kTextKinds; ++kind)
      if (packType(static_cast<TextKind>(kind)) == type) return static_cast<TextKind>(kind);
    return std::nullopt;
  }

  void checkOrder(const Pack& pack, size_t index) {
    if (pack.sequence != (m_in_block & 0xFFU))
      say(PackTrouble::kWrong, index + 1,
          "the pack has the number " + std::to_string(pack.sequence) + " where " +
              std::to_string(m_in_block & 0xFFU) + " is expected");
    if (pack.type < m_last_type)
      say(PackTrouble::kWrong, index + 1,
          "the pack is of the type " + hexadecimal(pack.type) + " and follows one of " +
              hexadecimal(m_last_type));
    m_last_type = std::max(m_last_type, pack.type);
    m_in_block = pack.sequence + 1U;
    m_last_sequence = pack.sequence;
  }

  void readSizePack(const Pack& pack, size_t index) {
    if (pack.number != m_size_packs)
      say(PackTrouble::kWrong, index + 1,
          "the size pack says that it is number " + std::to_string(pack.number) +
              " of three, not " + std::to_string(m_size_packs));
    if (pack.place != 0 || pack.two_byte)
      say(PackTrouble::kOdd, index + 1, "a size pack has a place in a text");
    m_sizes += pack.payload;
    ++m_size_packs;
  }

  void addPayload(TextKind kind, const Pack& pack, size_t index) {
    if (!m_kind || *m_kind != kind) {
      finishKind();
      m_kind = kind;
      m_strings = {""};
      m_first_number = pack.number;
    }
    const size_t number = m_strings.size() - 1 + m_first_number;
    const size_t place = std::min(m_strings.back().size(), kMostPlace);
    if (pack.number != number || pack.place != place)
      say(PackTrouble::kWrong, index + 1,
          "the pack says that it begins at letter " + std::to_string(pack.place) + " of text " +
              std::to_string(pack.number) + ", and by those before it that is letter " +
              std::to_string(place) + " of text " + std::to_string(number));
    for (const char c : pack.payload) {
      if (c == '\0')
        m_strings.emplace_back();
      else
        m_strings.back() += c;
    }
  }

  /// The last pack of a kind is filled with zeros, which are no texts.
  void finishKind() {
    if (!m_kind) return;
    const bool ended = m_strings.back().empty();
    if (!ended) say(PackTrouble::kWrong, 0, "the last text of a kind has no end");
    m_strings.resize(m_strings.size() - (ended ? 1 : 0));
    TextBlock& block = m_read.texts.block(*m_kind);
    if (block.present())
      say(PackTrouble::kWrong, 0, "the packs of a kind stand in two places");
    else
      fill(block);
    m_kind.reset();
  }

  void fill(TextBlock& block) {
    m_strings.insert(m_strings.begin(), std::min<size_t>(m_first_number, 99), std::string());
    block.disc = m_strings.empty() ? std::string() : m_strings.front();
    for (size_t t = 1; t < m_strings.size(); ++t) {
      const bool again = m_strings[t] == kAsBefore && t > 1;
      block.tracks.push_back(again ? block.tracks.back() : m_strings[t]);
    }
  }

  void checkSizes() {
    if (m_read.packs == 0) return say(PackTrouble::kWrong, 0, "there is no pack");
    if (m_sizes.size() != kBlockSizesBytes)
      return say(PackTrouble::kWrong, 0,
                 "there are " + std::to_string(m_size_packs) + " size packs where 3 are needed");
    m_counted[kSizePackType - kFirstPackType] = kSizePacks;
    for (size_t type = 0; type < kPackTypes; ++type) {
      const int said = byteAt(m_sizes, 4 + type);
      if (said == m_counted[type]) continue;
      say(PackTrouble::kWrong, 0,
          "the size packs say " + std::to_string(said) + " packs of the type " +
              hexadecimal(static_cast<unsigned>(kFirstPackType + type)) + ", and there are " +
              std::to_string(m_counted[type]));
    }
    if (byteAt(m_sizes, 20) != m_last_sequence)
      say(PackTrouble::kWrong, 0,
          "the size packs say that the last pack is " + std::to_string(byteAt(m_sizes, 20)) +
              ", and it is " + std::to_string(m_last_sequence));
    takeFieldsOfSizes();
  }

  void takeFieldsOfSizes() {
    m_read.first_track = byteAt(m_sizes, 1);
    m_read.last_track = byteAt(m_sizes, 2);
    if (byteAt(m_sizes, 0) > 1)
      say(PackTrouble::kOdd, 0,
          "the texts are in the character set " + hexadecimal(byteAt(m_sizes, 0)) +
              " and shown as ISO 8859-1");
    constexpr size_t kOtherBlocks = 21, kLanguages = 28;
    for (size_t block = 1; block < 8 && !m_more_blocks; ++block)
      if (m_sizes[kOtherBlocks + block - 1] != '\0')
        return say(PackTrouble::kWrong, 0, "the size packs name a second language that is missing");
    if (byteAt(m_sizes, 3) != 0)
      say(PackTrouble::kOdd, 0, "the size packs claim a right to the texts");
    if (byteAt(m_sizes, kLanguages) != 9)
      say(PackTrouble::kOdd, 0,
          "the language is " + hexadecimal(byteAt(m_sizes, kLanguages)) + ", not English");
    const auto rest = m_sizes.substr(kLanguages + 1);
    if (!m_more_blocks && rest.find_first_not_of('\0') != std::string::npos)
      say(PackTrouble::kOdd, 0, "the size packs give the language of blocks that are not there");
  }

  /// The zeros that fill the last pack of a kind have been taken for empty texts.
  void fitToTracks() {
    if (m_read.last_track == 0) return;
    const auto tracks = static_cast<size_t>(m_read.last_track);
    m_read.texts.recording_codes.resize(tracks);
    for (size_t kind = 0; kind < kTextKinds; ++kind) {
      std::vector<std::string>& texts = m_read.texts.blocks[kind].tracks;
      if (texts.empty()) continue;
      const auto is_text = [](const std::string& text) { return !text.empty(); };
      const bool too_many = texts.size() > tracks &&
                            std::any_of(texts.begin() + m_read.last_track, texts.end(), is_text);
      if (texts.size() < tracks || too_many)
        say(PackTrouble::kWrong, 0,
            "the packs of the type " + hexadecimal(packType(static_cast<TextKind>(kind))) +
                (too_many ? " hold more texts than tracks"
                          : " do not hold a text for every track"));
      texts.resize(tracks);
    }
  }

  std::string_view m_bytes;
  ReadPacks m_read;
  std::array<int, kPackTypes> m_counted{};
  unsigned m_in_block = 0;  ///< number that the next pack should have
  unsigned m_last_sequence = 0;
  uint8_t m_last_type = 0, m_passed_over = 0;
  bool m_more_blocks = false;
  int m_size_packs = 0;
  std::string m_sizes;
  std::optional<TextKind> m_kind;  ///< that is being read
  std::vector<std::string> m_strings;
  size_t m_first_number = 0;  ///< of the first of them
};

}  // namespace

ReadPacks readPacks(std::string_view bytes) {
  return PackReader(bytes).run();
}

}  // namespace velmor::disc
