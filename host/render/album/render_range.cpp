#include "host/render/album/render_range.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <optional>
#include <utility>

#include "disc/units/disc_units.h"
#include "host/render/album/mark_names.h"

namespace velmor::render {

namespace {

double onFrame(double seconds) {
  return std::round(seconds * disc::kSampleRate) / disc::kSampleRate;
}

/// Seconds from frame `origin` to `seconds`, which is rounded to a whole frame first.
double relative(double seconds, int64_t origin) {
  return (std::round(seconds * disc::kSampleRate) - static_cast<double>(origin)) /
         disc::kSampleRate;
}

/// The index of the last marker before `start` that names a track.
std::optional<size_t> markerInForce(const std::vector<Mark>& marks, double start, bool hash_only) {
  std::optional<size_t> found;
  for (size_t i = 0; i < marks.size() && marks[i].start <= start; ++i) {
    if (!marks[i].end && namesTrack(marks[i].name, hash_only)) found = i;
  }
  return found;
}

/// Where the first region that holds `start` begins.
std::optional<double> regionInForce(const std::vector<Mark>& marks, double start) {
  for (const Mark& mark : marks) {
    if (mark.end && mark.start <= start && *mark.end > start) return mark.start;
  }
  return std::nullopt;
}

/// Leaves of the mark's pause what lies behind `start`, to which the mark moves if it lies before.
void cutPause(Mark& mark, double start) {
  mark.pause_before = std::clamp(mark.start - start, 0.0, mark.pause_before);
  mark.pause_behind = std::max(mark.pause_behind - std::max(start - mark.start, 0.0), 0.0);
}

}  // namespace

std::vector<Mark> marksInRange(std::vector<Mark> marks, int64_t start_frame, int64_t end_frame,
                               TrackMode mode, bool hash_only, std::vector<Mark>& left_out) {
  assert(start_frame < end_frame);
  const double start = disc::secondsOf(start_frame);
  const double end = disc::secondsOf(end_frame);
  for (Mark& mark : marks) {
    mark.start = onFrame(mark.start);
    if (mark.end) mark.end = onFrame(*mark.end);
  }
  const std::optional<size_t> in_force = markerInForce(marks, start, hash_only);
  std::optional<double> tags_from;
  if (mode == kTracksFromRegions) {
    tags_from = regionInForce(marks, start);
  } else if (in_force) {
    tags_from = marks[*in_force].start;
  }
  const auto stays_or_moves = [&](size_t i) {
    const Mark& mark = marks[i];
    if (mark.start >= end) return false;
    if (mark.end) return *mark.end > start;
    return mark.start >= start || i == in_force ||
           (tags_from && isTag(mark.name) && mark.start >= *tags_from);
  };
  std::vector<Mark> kept;
  for (size_t i = 0; i < marks.size(); ++i) {
    Mark& mark = marks[i];
    if (!stays_or_moves(i)) {
      left_out.push_back(std::move(mark));
      continue;
    }
    cutPause(mark, start);
    mark.start = relative(std::max(mark.start, start), start_frame);
    if (mark.end) mark.end = relative(std::min(*mark.end, end), start_frame);
    kept.push_back(std::move(mark));
  }
  return kept;
}

std::vector<Mark> takeEmptyRegions(std::vector<Mark>& marks) {
  double covered = 0.0;
  const auto is_empty = [&](const Mark& mark) {
    if (!mark.end) return false;
    if (*mark.end > std::max(mark.start, covered)) {
      covered = *mark.end;
      return false;
    }
    return true;
  };
  std::vector<Mark> kept;
  std::vector<Mark> empty;
  for (Mark& mark : marks) (is_empty(mark) ? empty : kept).push_back(std::move(mark));
  marks = std::move(kept);
  return empty;
}

}  // namespace velmor::render
