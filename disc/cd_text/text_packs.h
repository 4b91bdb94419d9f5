// The packs that CD-TEXT is stored in (MMC-3 annex J).
#pragma once

#include <cstddef>

namespace velmor::disc {

inline constexpr int kTextPackBytes = 12;   ///< payload of a pack
inline constexpr int kMostTextPacks = 253;  ///< that a language block has room for
inline constexpr int kSizePacks = 3;        ///< of them, those that say how many the others are

/// Packs that so many bytes of payload take.
constexpr size_t packsOfBytes(size_t bytes) {
  return (bytes + kTextPackBytes - 1) / kTextPackBytes;
}

}  // namespace velmor::disc
