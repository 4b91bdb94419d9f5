#include "host/render/plan/sheet_times.h"

#include <algorithm>
#include <cassert>

#include "disc/units/disc_units.h"

namespace velmor::render {

namespace {

int64_t sectorInSheet(double seconds) {
  const auto milliseconds = static_cast<int64_t>(seconds * 1000.0) % 1000;
  return static_cast<int64_t>(seconds) * disc::kSectorsPerSecond +
         milliseconds * disc::kSectorsPerSecond / 1000;
}

}  // namespace

int64_t startSectorInSheet(const TrackPlan& plan, size_t track) {
  assert(track < plan.tracks.size());
  return sectorInSheet(plan.tracks[track].start);
}

int64_t exactStartSector(const TrackPlan& plan, size_t track) {
  assert(track < plan.tracks.size());
  const PlannedTrack& planned = plan.tracks[track];
  return (planned.start_frame + planned.pause_behind) / disc::kFramesPerSector;
}

std::optional<int64_t> gapSectorInSheet(const SinkConfig& config, const TrackPlan& plan,
                                        size_t track) {
  assert(track < plan.tracks.size());
  if (track == 0) {
    return config.disc_leadin_ms > 0 ? std::optional<int64_t>(0) : std::nullopt;
  }
  if (config.track_leadin_ms == 0) return std::nullopt;
  const int whole_seconds = config.track_leadin_ms / 1000;
  return sectorInSheet(std::max(plan.tracks[track].start - whole_seconds, 0.0));
}

std::optional<int64_t> ownGapSector(const TrackPlan& plan, size_t track) {
  const PlannedTrack& planned = plan.tracks[track];
  if (!planned.hasOwnPause()) return std::nullopt;
  return track == 0 ? 0 : (planned.start_frame - planned.pause_before) / disc::kFramesPerSector;
}

std::optional<int64_t> exactGapSector(const SinkConfig& config, const TrackPlan& plan,
                                      size_t track) {
  const int64_t start = exactStartSector(plan, track);
  if (const auto own = ownGapSector(plan, track)) {
    return *own < start ? own : std::nullopt;
  }
  const std::optional<int64_t> in_sheet = gapSectorInSheet(config, plan, track);
  if (!in_sheet) return std::nullopt;
  const int64_t gap = *in_sheet == 0 ? 0 : *in_sheet + start - startSectorInSheet(plan, track);
  return gap < start ? std::optional(gap) : std::nullopt;
}

}  // namespace velmor::render
