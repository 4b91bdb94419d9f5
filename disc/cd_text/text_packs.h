// The packs that CD-TEXT is stored in (MMC-3 annex J): as bytes, with their check sum.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velmor::disc {

inline constexpr int kTextPackBytes = 12;   ///< payload of a pack
inline constexpr int kWholePackBytes = 18;  ///< with its four bytes of header and its check sum
inline constexpr int kSizePacks = 3;        ///< those that say how many the others are
/// Packs of payload that a language block has room for beside `kSizePacks`: pack numbers have one
/// byte.
inline constexpr int kMostTextPacks = 256 - kSizePacks;

/// The most that a pack's four bits say of where in a text it begins.
inline constexpr size_t kMostPlace = 15;

/// The types of packs, by their first byte.
inline constexpr uint8_t kFirstPackType = 0x80;  ///< titles
inline constexpr uint8_t kCodePackType = 0x8E;   ///< catalogue number and ISRCs
inline constexpr uint8_t kSizePackType = 0x8F;
inline constexpr size_t kPackTypes = 16;

/// The payload of the three size packs of a block.
struct BlockSizes {
  uint8_t character_set = 0;  ///< 0: ISO 8859-1
  uint8_t first_track = 1, last_track = 1;
  uint8_t copyright = 0;
  std::array<uint8_t, kPackTypes> packs{};  ///< of each type
  std::array<uint8_t, 8> last_of_block{};   ///< number of each block's last pack; 0: no block
  std::array<uint8_t, 8> language{};        ///< of each block (EBU Tech 3264)
};
inline constexpr size_t kBlockSizesBytes = size_t{kSizePacks} * kTextPackBytes;

/// Packs of payload that so many bytes take.
constexpr size_t packsOfBytes(size_t bytes) {
  return (bytes + kTextPackBytes - 1) / kTextPackBytes;
}

/// The check sum of a pack's first 16 bytes, as its last two hold it, high byte first: CRC-16 with
/// the polynomial 0x1021, inverted.
uint16_t packCheckSum(std::string_view header_and_payload);

}  // namespace velmor::disc
