// The product's home for the same rules is disc/cd_text.
#include "tests/ddp/model/text_packs.h"

#include <algorithm>

namespace ddp_model {
namespace {

constexpr size_t kPackBytes = 18;
constexpr size_t kTextBytes = 12;
constexpr int kFirstType = 0x80;
constexpr int kSizesType = 0x8F;
constexpr size_t kSizesPacks = 3;
constexpr int kEnglish = 0x09;

std::string byteOf(size_t value) {
  return {static_cast<char>(static_cast<unsigned char>(value))};
}

/// The remainder of the bits, taken as one long number, divided by the polynomial.
unsigned remainder(const std::string& bytes) {
  unsigned rest = 0;
  for (const char byte : bytes + std::string(2, '\0'))
    for (unsigned mask = 0x80; mask != 0; mask >>= 1) {
      rest = rest << 1 | ((static_cast<unsigned char>(byte) & mask) != 0 ? 1U : 0U);
      if ((rest & 0x10000U) != 0) rest ^= 0x11021U;
    }
  return rest;
}

/// The strings of one type one behind the other, and for every byte whose it is and its place.
struct Run {
  struct Owner {
    size_t string = 0, place = 0;
  };
  std::string bytes;
  std::vector<Owner> owners;
};

Run runOf(const ModelDisc& disc, size_t type) {
  Run run;
  const auto append = [&run](const std::string& text, size_t number) {
    for (size_t place = 0; place <= text.size(); ++place) run.owners.push_back({number, place});
    run.bytes += text + '\0';
  };
  append(disc.texts[type], 0);
  for (size_t t = 0; t < disc.tracks.size(); ++t) append(disc.tracks[t].texts[type], t + 1);
  return run;
}

bool isUsed(const ModelDisc& disc, size_t type) {
  return !disc.texts[type].empty() ||
         std::any_of(disc.tracks.begin(), disc.tracks.end(),
                     [type](const ModelTrack& track) { return !track.texts[type].empty(); });
}

class Packs {
 public:
  void add(int type, size_t number, size_t place, std::string text) {
    text.resize(kTextBytes, '\0');
    const std::string body = byteOf(static_cast<size_t>(type)) + byteOf(number) + byteOf(count()) +
                             byteOf(std::min<size_t>(place, 15)) + text;
    const unsigned check = ~remainder(body);
    m_bytes += body + byteOf(check >> 8 & 0xFF) + byteOf(check & 0xFF);
  }
  size_t count() const { return m_bytes.size() / kPackBytes; }
  const std::string& bytes() const { return m_bytes; }

 private:
  std::string m_bytes;
};

/// What the packs of sizes hold. `of_type` counts the packs that are there before them.
std::string sizes(size_t tracks, const std::array<size_t, 6>& of_type, size_t packs_before) {
  std::string held = byteOf(0) + byteOf(1) + byteOf(tracks) + byteOf(0);
  for (const size_t packs : of_type) held += byteOf(packs);
  held += std::string(15 - of_type.size(), '\0') + byteOf(kSizesPacks);
  held += byteOf(packs_before + kSizesPacks - 1) + std::string(7, '\0');
  return held + byteOf(kEnglish) + std::string(7, '\0');
}

}  // namespace

std::string textPacks(const ModelDisc& disc) {
  Packs packs;
  std::array<size_t, 6> of_type{};
  for (size_t type = 0; type < of_type.size(); ++type) {
    if (!isUsed(disc, type)) continue;
    const Run run = runOf(disc, type);
    for (size_t at = 0; at < run.bytes.size(); at += kTextBytes, ++of_type[type])
      packs.add(kFirstType + static_cast<int>(type), run.owners[at].string, run.owners[at].place,
                run.bytes.substr(at, kTextBytes));
  }
  if (packs.count() == 0) return {};
  const std::string held = sizes(disc.tracks.size(), of_type, packs.count());
  for (size_t place = 0; place < kSizesPacks; ++place)
    packs.add(kSizesType, place, 0, held.substr(place * kTextBytes, kTextBytes));
  return packs.bytes();
}

size_t packCount(const ModelDisc& disc) {
  return textPacks(disc).size() / kPackBytes;
}

}  // namespace ddp_model
