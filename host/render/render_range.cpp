#include "host/render/render_range.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "host/render/mark_names.h"

namespace velmor::render {

namespace {

/// The index of the last marker before `start` that names a track.
std::optional<size_t> markerInForce(const std::vector<Mark>& marks, double start, bool hash_only) {
  std::optional<size_t> found;
  for (size_t i = 0; i < marks.size() && marks[i].start <= start; ++i) {
    if (!marks[i].end && namesTrack(marks[i].name, hash_only)) found = i;
  }
  return found;
}

}  // namespace

std::vector<Mark> marksInRange(std::vector<Mark> marks, double start, double end, bool hash_only) {
  const std::optional<size_t> in_force = markerInForce(marks, start, hash_only);
  std::vector<Mark> kept;
  for (size_t i = 0; i < marks.size(); ++i) {
    Mark& mark = marks[i];
    if (mark.start >= end) continue;
    if (mark.end) {
      if (*mark.end <= start) continue;
      mark.start = std::max(mark.start, start);
      mark.end = std::min(*mark.end, end);
    } else if (mark.start < start) {
      const bool moves = in_force && (i == *in_force ||
                                      (isTag(mark.name) && mark.start >= marks[*in_force].start));
      if (!moves) continue;
      mark.start = start;
    }
    mark.start -= start;
    if (mark.end) *mark.end -= start;
    kept.push_back(std::move(mark));
  }
  return kept;
}

}  // namespace velmor::render
