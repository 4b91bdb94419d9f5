#include "tests/ddp/model/reference_set.h"

#include <cstdio>
#include <cstring>

namespace ddp_model {

namespace {

/// A form of blanks, into which fields are printed at the places that the layout gives.
struct Form {
  explicit Form(size_t length) : bytes(length, ' ') {}

  void left(size_t at, size_t width, const std::string& value) {
    for (size_t i = 0; i < width && i < value.size(); ++i) bytes[at + i] = value[i];
  }
  void right(size_t at, size_t width, const std::string& value) {
    left(at + width - value.size(), value.size(), value);
  }

  std::string bytes;
};

std::string clock(int64_t sector) {
  char text[40];
  snprintf(text, sizeof text, "%02lld%02lld%02lld", static_cast<long long>(sector / 4500),
           static_cast<long long>(sector % 4500 / 75), static_cast<long long>(sector % 75));
  return text;
}

std::string identifierOf(const ModelDisc& disc) {
  Form form(128);
  form.left(0, 8, "DDP 2.00");
  form.left(8, 13, disc.catalogue);
  form.left(38, 48, disc.master_id);
  form.left(87, 2, "CD");
  return form.bytes;
}

std::string streamOf(const char* type, int64_t length, const char* kind, const char* file) {
  Form form(128);
  form.left(0, 4, "VVVM");
  form.left(4, 2, type);
  form.right(14, 8, std::to_string(length));
  form.left(30, 8, kind);
  form.left(71, 3, " 17");
  form.left(74, 17, file);
  return form.bytes;
}

std::string mapOf(const ModelSet& set, int64_t pregap) {
  std::string all;
  if (!set.texts.empty()) {
    Form texts(0);
    texts.bytes = streamOf("S0", static_cast<int64_t>(set.texts.size()), "CDTEXT", "CDTEXT.BIN");
    texts.left(55, 2, "00");
    all += texts.bytes;
  }
  all += streamOf("S0", static_cast<int64_t>(set.pq.size()), "PQ DESCR", "SD");
  Form audio(0);
  audio.bytes = streamOf("D0", set.sectors, "", "IMAGE.DAT");
  audio.left(38, 2, "DA");
  audio.left(40, 2, "71");
  audio.right(46, 4, std::to_string(pregap));
  return all + audio.bytes;
}

std::string cueOf(const char* track, int index, int64_t sector, const std::string& control) {
  char number[8];
  snprintf(number, sizeof number, "%02d", index % 100);
  Form form(64);
  form.left(0, 4, "VVVS");
  form.left(4, 2, track);
  form.left(6, 2, number);
  form.right(8, 8, clock(sector));
  form.left(16, 2, control);
  return form.bytes;
}

std::string controlOf(const ModelTrack& track) {
  const int bits = (track.pre_emphasis ? 1 : 0) | (track.copies_permitted ? 2 : 0) |
                   (track.four_channels ? 8 : 0);
  char control[8];
  snprintf(control, sizeof control, "%X%c", static_cast<unsigned>(bits) & 15u,
           track.serial_copies ? 'S' : '1');
  return control;
}

std::string pqOf(const ModelDisc& disc, int64_t shift, int64_t sectors) {
  std::string all = cueOf("00", 0, 0, "01");
  for (size_t i = 0; i < disc.catalogue.size(); ++i) all[32 + i] = disc.catalogue[i];
  for (size_t t = 0; t < disc.tracks.size(); ++t) {
    const ModelTrack& track = disc.tracks[t];
    char number[8];
    snprintf(number, sizeof number, "%02u", static_cast<unsigned>(t + 1) % 100);
    const size_t first = all.size();
    if (t == 0 && track.indices[0].number == 1) all += cueOf(number, 0, 0, controlOf(track));
    for (const ModelIndex& index : track.indices)
      all += cueOf(number, index.number, index.sector + shift, controlOf(track));
    for (size_t i = 0; i < track.isrc.size(); ++i) all[first + 20 + i] = track.isrc[i];
  }
  for (int twice = 0; twice < 2; ++twice) all += cueOf("AA", 1, sectors, "01");
  return all;
}

/// CRC-16 of the CCITT, bit by bit, and inverted.
void seal(std::string& pack) {
  unsigned crc = 0;
  for (const char byte : pack) {
    for (int bit = 7; bit >= 0; --bit) {
      const unsigned in = (static_cast<unsigned char>(byte) >> bit & 1u) ^ (crc >> 15 & 1u);
      crc = (crc << 1 ^ (in != 0 ? 0x1021u : 0u)) & 0xFFFFu;
    }
  }
  pack += static_cast<char>(~crc >> 8 & 0xFFu);
  pack += static_cast<char>(~crc & 0xFFu);
}

/// One kind of text, byte by byte: what the byte is, of which string, at which place in it.
struct Letter {
  char byte;
  size_t string, place;
};

std::vector<Letter> lettersOf(const ModelDisc& disc, size_t kind) {
  std::vector<Letter> letters;
  for (size_t s = 0; s <= disc.tracks.size(); ++s) {
    const std::string& text = s == 0 ? disc.texts[kind] : disc.tracks[s - 1].texts[kind];
    for (size_t i = 0; i <= text.size(); ++i)
      letters.push_back({i < text.size() ? text[i] : '\0', s, i});
  }
  return letters;
}

bool given(const ModelDisc& disc, size_t kind) {
  if (!disc.texts[kind].empty()) return true;
  for (const ModelTrack& track : disc.tracks)
    if (!track.texts[kind].empty()) return true;
  return false;
}

std::string textsOf(const ModelDisc& disc) {
  std::string all;
  unsigned number = 0;
  unsigned counts[16] = {};
  for (size_t kind = 0; kind < 6; ++kind) {
    if (!given(disc, kind)) continue;
    const std::vector<Letter> letters = lettersOf(disc, kind);
    for (size_t at = 0; at < letters.size(); at += 12) {
      std::string pack;
      pack += static_cast<char>(0x80u + kind);
      pack += static_cast<char>(letters[at].string);
      pack += static_cast<char>(number++);
      pack += static_cast<char>(letters[at].place > 15 ? 15 : letters[at].place);
      for (size_t i = at; i < at + 12; ++i) pack += i < letters.size() ? letters[i].byte : '\0';
      seal(pack);
      all += pack;
      ++counts[kind];
    }
  }
  if (all.empty()) return all;
  counts[15] = 3;
  std::string sizes(36, '\0');
  sizes[1] = 1;
  sizes[2] = static_cast<char>(disc.tracks.size());
  for (size_t i = 0; i < 16; ++i) sizes[4 + i] = static_cast<char>(counts[i]);
  sizes[20] = static_cast<char>(number + 2);
  sizes[28] = 9;
  for (unsigned i = 0; i < 3; ++i) {
    std::string pack{static_cast<char>(0x8F), static_cast<char>(i), static_cast<char>(number + i),
                     '\0'};
    pack += sizes.substr(i * 12, 12);
    seal(pack);
    all += pack;
  }
  return all;
}

}  // namespace

ModelSet makeSet(const ModelDisc& disc) {
  const std::vector<ModelIndex>& first = disc.tracks.front().indices;
  const bool has_pregap = first.front().number == 0;
  ModelSet set;
  set.silent_sectors = has_pregap ? 0 : 150;
  set.sectors = set.silent_sectors + (disc.image_bytes + 2351) / 2352;
  set.identifier = identifierOf(disc);
  set.texts = textsOf(disc);
  set.pq = pqOf(disc, set.silent_sectors, set.sectors);
  const int64_t start = has_pregap ? first[1].sector : first[0].sector;
  set.map = mapOf(set, set.silent_sectors + start);
  return set;
}

}  // namespace ddp_model
