// What a scan needs to know of most sectors, found without looking at samples one by one.
#pragma once

#include <cstdint>

#include "disc/units/disc_units.h"

namespace velmor::check {

struct Extremes {
  int16_t low, high;
};

/// `samples` holds one sector, 1176 samples. A branchless loop of constant length, for the sake of
/// the vector unit: the scan must not be slower than the reading.
inline Extremes sectorExtremes(const int16_t* samples) {
  int16_t low = samples[0], high = samples[0];
  for (int i = 0; i < disc::kFramesPerSector * 2; ++i) {
    low = samples[i] < low ? samples[i] : low;
    high = samples[i] > high ? samples[i] : high;
  }
  return {low, high};
}

/// Do two samples of one channel that follow each other both lie at `level`? The loop is branchless
/// as well, since it runs often: loud masters touch full scale in every other sector, though mostly
/// with single samples.
inline bool holdsPair(const int16_t* samples, int16_t level) {
  int16_t found = 0;
  for (int i = 0; i + 2 < disc::kFramesPerSector * 2; ++i) {
    const bool pair = (samples[i] == level) & (samples[i + 2] == level);
    found = static_cast<int16_t>(found | static_cast<int16_t>(pair));
  }
  return found != 0;
}

/// A part of a sector, in stereo frames: a whole number of vectors.
inline constexpr int64_t kBlockFrames = 28;
static_assert(disc::kFramesPerSector % kBlockFrames == 0);

/// Does a sample of the block lie at full scale? Most blocks of a clipped sector do not clip, and
/// this branchless loop passes over them quickly.
inline bool touchesFullScale(const int16_t* block) {
  int16_t found = 0;
  for (int i = 0; i < kBlockFrames * 2; ++i) {
    const bool full = (block[i] == INT16_MAX) | (block[i] == INT16_MIN);
    found = static_cast<int16_t>(found | static_cast<int16_t>(full));
  }
  return found != 0;
}

}  // namespace velmor::check
