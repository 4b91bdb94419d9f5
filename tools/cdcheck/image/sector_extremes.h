// The smallest and largest sample of a sector: all that a scan needs to know of most sectors.
#pragma once

#include <cstdint>

#include "tools/cdcheck/image/disc_units.h"

namespace velmor::cdcheck {

struct Extremes {
  int16_t low, high;
};

/// `samples` holds one sector, 1176 samples. A branchless loop of constant length, for the sake of
/// the vector unit: the scan must not be slower than the reading.
inline Extremes sectorExtremes(const int16_t* samples) {
  int16_t low = samples[0], high = samples[0];
  for (int i = 0; i < kSectorFrames * 2; ++i) {
    low = samples[i] < low ? samples[i] : low;
    high = samples[i] > high ? samples[i] : high;
  }
  return {low, high};
}

}  // namespace velmor::cdcheck
