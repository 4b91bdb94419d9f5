// A second writer of the descriptors of a set, for the tests alone. It shares no code and no author
// with the product, whose home for the same rules is disc/ddp and disc/cd_text.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace ddp_model {

/// TITLE, PERFORMER, SONGWRITER, COMPOSER, ARRANGER, MESSAGE; ISO 8859-1, empty where missing.
using Texts = std::array<std::string, 6>;

struct ModelIndex {
  int number = 1;
  int64_t sector = 0;  ///< of the image that the sheet names
};

struct ModelTrack {
  std::vector<ModelIndex> indices;  ///< ascending, from 0 or from 1
  Texts texts;
  std::string isrc;
  bool copies_permitted = false, four_channels = false, pre_emphasis = false, serial_copies = false;
};

struct ModelDisc {
  std::string catalogue, master_id;
  Texts texts;
  std::vector<ModelTrack> tracks;
  int64_t image_bytes = 0;
};

struct ModelSet {
  std::string identifier, map, texts, pq;  ///< DDPID, DDPMS, CDTEXT.BIN (empty: none), SD
  int64_t silent_sectors = 0;              ///< before the image in IMAGE.DAT
  int64_t sectors = 0;                     ///< of IMAGE.DAT
};

enum class CdText { kWritten, kLeftOut };

/// The descriptors of a disc. A disc without any text has no CDTEXT.BIN either way.
ModelSet makeSet(const ModelDisc& disc, CdText cd_text);

/// How many packs the texts of the disc take, the three of sizes among them; 0 without texts.
size_t packCount(const ModelDisc& disc);

}  // namespace ddp_model
