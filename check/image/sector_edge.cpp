#include "check/image/sector_edge.h"

#include <array>

#include "check/image/disc_units.h"

namespace velmor::cdcheck {

SectorEdge lookAtSector(const ImageFile& image, int64_t sector) {
  std::array<int16_t, kSectorFrames * 2> samples{};
  const auto frames =
      static_cast<int64_t>(image.readFrames(sector * kSectorFrames, samples.data(), kSectorFrames));
  const auto zero = [&](int64_t f) {
    const auto at = static_cast<size_t>(f) * 2;
    return samples[at] == 0 && samples[at + 1] == 0;
  };
  SectorEdge edge;
  while (edge.firstSound < frames && zero(edge.firstSound)) ++edge.firstSound;
  if (edge.firstSound >= frames) edge.firstSound = kSectorFrames;
  if (edge.firstSound >= kPauseFrames) return edge;
  int64_t pause = 0;
  for (int64_t f = edge.firstSound; f < frames; ++f) {
    pause = zero(f) ? pause + 1 : 0;
    if (pause == kPauseFrames) {
      edge.tail = f + 1 - pause;
      return edge;
    }
  }
  return edge;
}

}  // namespace velmor::cdcheck
