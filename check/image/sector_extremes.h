// What a scan needs to know of most sectors, found without looking at samples one by one.
#pragma once

#include <cstdint>

#include "disc/units/disc_units.h"

namespace velmor::check {

struct Extremes {
  int16_t low, high;

  void take(int16_t sample) {
    low = sample < low ? sample : low;
    high = sample > high ? sample : high;
  }
};

/// `samples` holds one sector, 1176 samples. A branchless loop of constant length, for the sake of
/// the vector unit: the scan must not be slower than the reading. It goes through three parts at
/// once, each a whole number of vectors, so that no result has to wait for the one before.
inline Extremes sectorExtremes(const int16_t* samples) {
  constexpr int kPart = disc::kFramesPerSector * 2 / 3;
  static_assert(kPart % 8 == 0);
  Extremes a{samples[0], samples[0]}, b = a, c = a;
  for (int i = 0; i < kPart; ++i) {
    a.take(samples[i]);
    b.take(samples[i + kPart]);
    c.take(samples[i + 2 * kPart]);
  }
  for (const Extremes& part : {b, c}) {
    a.take(part.low);
    a.take(part.high);
  }
  return a;
}

}  // namespace velmor::check
