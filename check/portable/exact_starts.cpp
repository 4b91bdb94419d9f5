#include "check/portable/exact_starts.h"

#include <vector>

#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

void placePause(disc::Track& track, int64_t sector) {
  disc::Index pause = *track.index(1);
  pause.number = 0;
  pause.time = disc::msfOf(sector);
  std::erase_if(track.indices, [](const disc::Index& index) { return index.number == 0; });
  track.indices.insert(track.indices.begin(), pause);
}

}  // namespace

void moveStarts(disc::Sheet& sheet, const ExactStarts& exact) {
  if (exact.size() != sheet.tracks.size()) return;
  for (size_t t = 0; t < exact.size(); ++t) {
    const disc::Index* start = sheet.tracks[t].index(1);
    if (!start || !start->time.readable()) continue;
    const int64_t moved = exact[t].frame / disc::kFramesPerSector - start->time.sectors();
    for (disc::Index& index : sheet.tracks[t].indices) {
      const bool at_begin = index.number == 0 && index.time.sectors() == 0;
      if (!at_begin) index.time = disc::msfOf(index.time.sectors() + moved);
    }
    if (exact[t].pause) placePause(sheet.tracks[t], *exact[t].pause);
  }
}

}  // namespace velmor::check
