#include "tests/ddp/model/random_disc.h"

#include <algorithm>
#include <random>

namespace ddp_model {
namespace {

constexpr int kLeastTrack = 300;      ///< sectors from a track's index 01 to the next one's
constexpr int64_t kLongest = 398100;  ///< sectors of an image that a recordable disc holds
constexpr size_t kMostPacks = 256;
constexpr size_t kLettersOfPack = 12;

class Drawing {
 public:
  explicit Drawing(unsigned seed) : m_random(seed) {}

  ModelDisc draw() {
    if (chance(50)) m_disc.catalogue = catalogue();
    if (chance(30)) m_disc.master_id = text(upTo(1, 48));
    m_disc.texts = texts();
    const int tracks = chance(6) ? 99 : upTo(1, chance(10) ? 98 : 6);
    for (int t = 0; t < tracks; ++t) addTrack(t == 0);
    if (tracks == 99 && chance(40))
      fillPacks();
    else
      fitPacks();
    end();
    return m_disc;
  }

 private:
  int upTo(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(m_random);
  }
  bool chance(int percent) { return upTo(1, 100) <= percent; }
  char digit() { return static_cast<char>(upTo('0', '9')); }
  char letter() { return static_cast<char>(upTo('A', 'Z')); }

  /// Twelve digits and the one that makes their weighted sum a multiple of ten.
  std::string catalogue() {
    std::string code;
    int sum = 0;
    for (int place = 0; place < 12; ++place) {
      code += digit();
      sum += (code.back() - '0') * (place % 2 == 0 ? 1 : 3);
    }
    return code + static_cast<char>('0' + (10 - sum % 10) % 10);
  }

  /// Country, owner, year and number.
  std::string isrc() {
    std::string code{letter(), letter()};
    for (int i = 0; i < 3; ++i) code += chance(50) ? letter() : digit();
    for (int i = 0; i < 7; ++i) code += digit();
    return code;
  }

  /// Printable ASCII without quotes, not blank at an end.
  std::string text(int length) {
    std::string made;
    for (int i = 0; i < length; ++i) {
      const bool inside = i > 0 && i < length - 1;
      made += inside && chance(15) ? ' ' : static_cast<char>(upTo('#', '~'));
    }
    return made;
  }

  /// The same with letters of ISO 8859-1 beyond ASCII, no two of them together.
  std::string foreignText(int length) {
    std::string made = text(length);
    for (size_t i = 0; i + 1 < made.size(); i += static_cast<size_t>(upTo(2, 9)))
      made[i] = static_cast<char>(static_cast<unsigned char>(upTo(0xA1, 0xFF)));
    return made;
  }

  Texts texts() {
    Texts made;
    for (std::string& kind : made) {
      if (!chance(35)) continue;
      const int length = upTo(1, chance(20) ? 90 : 14);
      kind = chance(25) ? foreignText(length) : text(length);
    }
    return made;
  }

  void addTrack(bool first) {
    ModelTrack track;
    if (chance(50)) {
      track.indices.push_back({0, m_at});
      m_at += first ? upTo(150, chance(10) ? 9999 : 400) : upTo(1, 400);
    } else if (first && chance(30)) {
      m_at = upTo(1, 300);
    }
    const int64_t start = m_at;
    track.indices.push_back({1, start});
    addInnerIndices(track);
    m_at = std::max(m_at + 1, start + kLeastTrack);
    if (chance(60)) track.texts = texts();
    if (chance(50)) track.isrc = isrc();
    track.pre_emphasis = chance(20);
    track.four_channels = chance(20);
    track.copies_permitted = chance(30);
    track.serial_copies = !track.copies_permitted && chance(20);
    m_disc.tracks.push_back(track);
  }

  void addInnerIndices(ModelTrack& track) {
    const int last = chance(1) ? 99 : chance(30) ? upTo(2, 5) : 1;
    for (int number = 2; number <= last; ++number) {
      m_at += upTo(1, 200);
      track.indices.push_back({number, m_at});
    }
  }

  /// Leaves out kinds of text until the packs hold the rest.
  void fitPacks() {
    for (size_t kind = m_disc.texts.size(); packCount(m_disc) > kMostPacks;) setKind(--kind, {});
  }

  /// As many packs as there can be. Behind the titles' 99 ends lie as many bytes as make 253 packs
  /// whole, so that not even one more letter has room.
  void fillPacks() {
    for (size_t kind = 0; kind < m_disc.texts.size(); ++kind) setKind(kind, {});
    for (ModelTrack& track : m_disc.tracks) track.texts[0] = foreignText(29);
    const size_t held = m_disc.tracks.size() * 30 + 1;
    m_disc.texts[0] = text(static_cast<int>((kMostPacks - 3) * kLettersOfPack - held));
  }

  void setKind(size_t kind, const std::string& value) {
    m_disc.texts[kind] = value;
    for (ModelTrack& track : m_disc.tracks) track.texts[kind] = value;
  }

  /// The last track's four seconds, or all that a disc can hold; and perhaps a last sector that is
  /// not whole.
  void end() {
    const int64_t sectors = chance(1) ? kLongest : m_at + upTo(0, 500);
    m_disc.image_bytes = sectors * 2352;
    if (chance(30)) m_disc.image_bytes -= 4 * upTo(1, 587);
  }

  std::mt19937 m_random;
  ModelDisc m_disc;
  int64_t m_at = 0;  ///< where the next index may lie
};

}  // namespace

ModelDisc randomDisc(unsigned number) {
  return Drawing(number + 1).draw();
}

}  // namespace ddp_model
