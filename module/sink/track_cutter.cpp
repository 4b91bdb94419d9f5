#include "module/sink/track_cutter.h"

#include <algorithm>
#include <cmath>

#include "abi/host_functions.h"
#include "module/sink/marker_names.h"
#include "module/support/cd_units.h"

namespace {

/// Takes the block's next frames off the rest.
void advance(BlockRest& rest, int64_t frames) {
  rest.frames -= frames;
  rest.start += static_cast<double>(frames) / kSampleRate;
}

void write(TrackCutTarget& target, BlockRest& rest, int64_t frames) {
  target.WriteFrames(frames);
  advance(rest, frames);
}

struct ProjectMark {
  int next;  ///< the index to pass for the one after it, 0 when there is none at the index asked
             ///< for
  bool is_region = false;
  double position = 0.0;
  double end = 0.0;
  const char* name = nullptr;
};

ProjectMark markAt(int index) {
  ProjectMark mark{};
  mark.next =
      EnumProjectMarkers(index, &mark.is_region, &mark.position, &mark.end, &mark.name, nullptr);
  return mark;
}

enum class Entered { yes, block_ends_before, no_more };

/// Finds the region that the rest of the block runs into and goes to its start.
Entered enterRegion(TrackCutTarget& target, BlockRest& rest, double start_time, int& marker_index,
                    double& region_end) {
  for (ProjectMark mark = markAt(marker_index); mark.next; mark = markAt(marker_index)) {
    const double start = mark.position - start_time;
    const double end = mark.end - start_time;
    const bool usable = mark.is_region && !std::isnan(start) && !std::isnan(end);
    if (!usable || framesIn(end - rest.start) < 0) {
      marker_index = mark.next;
      continue;
    }
    const int64_t frames_before = framesIn(start - rest.start);
    if (frames_before >= rest.frames) return Entered::block_ends_before;
    if (frames_before > 0) {
      target.DropFrames(frames_before);
      advance(rest, frames_before);
    }
    // A region too close behind the last track start joins its track, but keeps its title and span.
    if (region_end >= 0.0 && target.TrackLength() >= kShortestTrack) target.StartTrack();
    target.RecordRegion(titleOf(mark.name, false), start + start_time, end - start);
    region_end = end;
    marker_index = mark.next;
    return Entered::yes;
  }
  return Entered::no_more;
}

}  // namespace

void cutAtMarkers(TrackCutTarget& target, BlockRest rest, double start_time, bool hash_only,
                  int& marker_index) {
  for (ProjectMark mark = markAt(marker_index); mark.next; mark = markAt(marker_index)) {
    const double position = mark.position - start_time;
    if (!mark.is_region && position > 0.0 && namesATrack(mark.name, hash_only)) {
      const int64_t frames_before = framesIn(position - rest.start);
      if (frames_before >= rest.frames) break;  // it lies in a later block
      if (frames_before >= 0) {
        write(target, rest, frames_before);
        if (target.TrackLength() >= kShortestTrack) {
          target.StartTrack();
          target.RecordMarker(titleOf(mark.name, hash_only), mark.position);
        }
      }
    }
    marker_index = mark.next;
  }
  if (rest.frames >= 1) target.WriteFrames(rest.frames);
}

void cutToRegions(TrackCutTarget& target, BlockRest rest, double start_time, int& marker_index,
                  double& region_end) {
  // Writing must be followed by entering a region and entering by writing: whatever the rounding
  // does, the loop ends.
  enum class Did { nothing, wrote, entered } did = Did::nothing;
  for (;;) {
    const int64_t frames_in_region = framesIn(region_end - rest.start);
    if (frames_in_region >= 1) {
      if (did == Did::wrote) break;
      did = Did::wrote;
      write(target, rest, std::min(rest.frames, frames_in_region));
    } else {
      if (did == Did::entered) break;
      did = Did::entered;
      if (enterRegion(target, rest, start_time, marker_index, region_end) != Entered::yes) return;
    }
    if (rest.frames < 1) return;
  }
  target.WriteFrames(rest.frames);
}
