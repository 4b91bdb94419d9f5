// The loops over samples that a scan spends its time in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "disc/units/disc_units.h"

namespace velmor::check {

inline constexpr size_t kSectorSamples = static_cast<size_t>(disc::kFramesPerSector) * 2;

/// Samples up to this far from zero count as none: dither and rounding leave that much where a
/// channel was silent, or where both were the same.
inline constexpr int kResidue = 2;

/// How the two channels of a sector compare.
struct Channels {
  bool left_silent = false;   ///< no sample beyond the residue
  bool right_silent = false;  ///< likewise
  bool same = false;          ///< no two samples of a frame differ by more than the residue
};

/// A sector is looked at in blocks of so many samples, left and right in turn. It is not a whole
/// number of them: the last one reaches back into the one before.
inline constexpr size_t kBlockSamples = 64;
inline constexpr size_t kSectorBlocks = (kSectorSamples + kBlockSamples - 1) / kBlockSamples;

/// The first sample of a block.
constexpr size_t blockBegin(size_t block) {
  return block + 1 < kSectorBlocks ? block * kBlockSamples : kSectorSamples - kBlockSamples;
}

/// What one look at a sector shows.
struct SectorLook {
  int16_t low = 0, high = 0;  ///< the extremes of both channels
  Channels channels;
  /// Bit b: block b may have turns of clipped runs (see BlockTurns). Every block that has any is
  /// among them, and none where no sample lies at full scale, 32767 or -32768. A form may tell more
  /// blocks than another.
  uint32_t turn_blocks = 0;
};

/// Three samples of a channel in a row at full scale, one of the two, make a clipped run. What a
/// block has of them; bit i is its sample i. What the block shares with the one before is left out.
struct BlockTurns {
  size_t block = 0;
  uint64_t begun = 0;  ///< the second sample of a run
  uint64_t ended = 0;  ///< the last sample of a run
  int runs = 0;        ///< how many begin
};

/// Samples that must be readable before and behind a sector in which turns are looked for.
inline constexpr size_t kTurnsLookBack = 4;
inline constexpr size_t kTurnsLookAhead = 2;

/// A form of the loops. The forms give the same but for `turn_blocks`.
struct SampleLoops {
  const char* name;
  bool runs_here;  ///< this very processor has what the form needs
  SectorLook (*look)(const int16_t* sector);
  /// Looks for turns in the blocks that the look has told. Those that have any are written to
  /// `found`, which has room for all blocks, in their order; returns how many.
  size_t (*turns)(const int16_t* sector, uint32_t turn_blocks, BlockTurns* found);
};

extern const SampleLoops kPlainLoops;

/// Forms for the vector unit of the kind of processor that this is built for, the fastest first. A
/// file for each kind defines them, and is compiled for that kind alone.
std::span<const SampleLoops> vectorLoops();

/// The fastest form that runs here.
const SampleLoops& sampleLoops();

}  // namespace velmor::check
