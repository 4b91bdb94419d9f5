#include "module/sink/track_cutter.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "module/sink/marker_names.h"
#include "module/support/cd_units.h"

namespace {

/// The step that takes the block's next frames off the rest.
CutStep takeFrames(CutAction action, BlockRest& rest, int64_t frames) {
  assert(frames >= 0 && frames <= rest.frames);
  rest.frames -= frames;
  rest.start += static_cast<double>(frames) / kSampleRate;
  return {.action = action, .frames = frames};
}

}  // namespace

bool MarkerCutter::canBeginATrack(const ProjectMark& mark) const {
  return !mark.is_region && mark.start > 0.0 && namesATrack(mark.name, m_hash_only);
}

CutStep MarkerCutter::next(double track_length) {
  assert(!done());
  if (m_reached.next) {
    const ProjectMark mark = std::exchange(m_reached, {});
    m_marker_index = mark.next;
    if (track_length >= kShortestTrack) {
      return {.action = CutAction::kBeginTrackAtMarker,
              .title = titleOf(mark.name, m_hash_only),
              .position = mark.position};
    }
  }
  for (ProjectMark mark = markAt(m_marker_index, m_start_time); mark.next;
       mark = markAt(m_marker_index, m_start_time)) {
    if (canBeginATrack(mark)) {
      const int64_t frames_before = framesIn(mark.start - m_rest.start);
      if (frames_before >= m_rest.frames) break;  // it lies in a later block
      if (frames_before >= 0) {
        m_reached = mark;
        return takeFrames(CutAction::kWriteFrames, m_rest, frames_before);
      }
    }
    m_marker_index = mark.next;
  }
  return takeFrames(CutAction::kWriteFrames, m_rest, m_rest.frames);
}

CutStep RegionCutter::next(double track_length) {
  assert(!done());
  if (m_reached.next) return enterRegion(track_length);
  // Writing must be followed by entering a region and entering by writing. Where the rounding would
  // have it otherwise, the rest of the block is written, so that there is an end.
  const int64_t frames_in_region = framesIn(m_region_end - m_rest.start);
  const Did doing = frames_in_region >= 1 ? Did::kWrote : Did::kEntered;
  if (doing == m_did) return takeFrames(CutAction::kWriteFrames, m_rest, m_rest.frames);
  m_did = doing;
  if (doing == Did::kEntered) return goToNextRegion(track_length);
  return takeFrames(CutAction::kWriteFrames, m_rest, std::min(m_rest.frames, frames_in_region));
}

CutStep RegionCutter::goToNextRegion(double track_length) {
  m_reached = regionInRest();
  if (!m_reached.next) return takeFrames(CutAction::kDropFrames, m_rest, m_rest.frames);
  const int64_t frames_before = framesIn(m_reached.start - m_rest.start);
  if (frames_before > 0) return takeFrames(CutAction::kDropFrames, m_rest, frames_before);
  return enterRegion(track_length);
}

/// The next region that is not over, if the rest of the block reaches it.
ProjectMark RegionCutter::regionInRest() {
  for (ProjectMark mark = markAt(m_marker_index, m_start_time); mark.next;
       mark = markAt(m_marker_index, m_start_time)) {
    if (mark.is_region && framesIn(mark.end - m_rest.start) >= 0) {
      const bool is_reached = framesIn(mark.start - m_rest.start) < m_rest.frames;
      return is_reached ? mark : ProjectMark{};
    }
    m_marker_index = mark.next;
  }
  return {};
}

CutStep RegionCutter::enterRegion(double track_length) {
  const ProjectMark region = std::exchange(m_reached, {});
  // A region too close behind the last track start joins its track, but keeps its title and span.
  const bool begins_track = m_region_end >= 0.0 && track_length >= kShortestTrack;
  m_region_end = region.end;
  m_marker_index = region.next;
  return {.action = begins_track ? CutAction::kBeginTrackOfRegion : CutAction::kJoinRegion,
          .title = titleOf(region.name, false),
          .position = region.start + m_start_time,
          .length = region.end - region.start};
}
