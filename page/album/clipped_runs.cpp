#include "page/album/clipped_runs.h"

#include "disc/units/disc_units.h"

namespace velmor::page {

void addClipped(const check::AudioMap& map, const AudioRun& run, PageDisc& disc) {
  for (const check::ClippedRun& clipped : map.clippedRuns()) {
    const int64_t sector = clipped.frame / disc::kFramesPerSector - run.first;
    if (sector >= 0 && sector < run.sectors)
      disc.clipped.push_back({run.at + sector, clipped.samples});
  }
  disc.clipped_left_out = disc.clipped_left_out || map.clippedRunsLeftOut() > 0;
}

}  // namespace velmor::page
