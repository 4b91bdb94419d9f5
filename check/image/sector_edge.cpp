#include "check/image/sector_edge.h"

#include <array>
#include <cassert>

#include "disc/units/disc_units.h"

namespace velmor::check {

SectorEdge lookAtSector(const ImageFile& image, int64_t sector) {
  assert(image.readable() && sector >= 0);
  std::array<int16_t, disc::kFramesPerSector * 2> samples{};
  const auto frames = static_cast<int64_t>(
      image.readFrames(sector * disc::kFramesPerSector, samples.data(), disc::kFramesPerSector));
  const auto zero = [&](int64_t f) {
    const auto at = static_cast<size_t>(f) * 2;
    return samples[at] == 0 && samples[at + 1] == 0;
  };
  SectorEdge edge;
  while (edge.first_sound < frames && zero(edge.first_sound)) ++edge.first_sound;
  if (edge.first_sound >= frames) edge.first_sound = disc::kFramesPerSector;
  if (edge.first_sound >= kPauseFrames) return edge;
  int64_t pause = 0;
  for (int64_t f = edge.first_sound; f < frames; ++f) {
    pause = zero(f) ? pause + 1 : 0;
    if (pause == kPauseFrames) {
      edge.tail = f + 1 - pause;
      return edge;
    }
  }
  return edge;
}

}  // namespace velmor::check
