// Which track each tag of a project ends up in.
//
// A host never links the module, so this repeats its rule on purpose; the rule's home is
// module/sink/cue_sheet.cpp.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/render/plan/track_plan.h"

namespace velmor::render {

/// What becomes of a tag.
struct TagPlace {
  size_t mark = 0;               ///< its index among the marks
  std::vector<size_t> given_to;  ///< the tracks, from 0, that bear it in the sheet
  /// The track that it lies in but that already bears an earlier one of its kind.
  std::optional<size_t> second_in;
};

/// The tags among `marks` in their order. As in the module, each track takes the first of a kind in
/// its stretch of the project; a millisecond before counts as in it.
std::vector<TagPlace> placesOfTags(const TrackPlan& plan, const std::vector<Mark>& marks);

/// One ISRC tag and what becomes of it.
struct IsrcPlace {
  std::string code;              ///< as the tag has it
  double position = 0.0;         ///< project seconds
  int input = 0;                 ///< as the mark has it
  std::vector<size_t> given_to;  ///< as in a `TagPlace`
  std::optional<size_t> second_in;
};

/// The ISRCs of `marks` in their order.
std::vector<IsrcPlace> placesOfIsrcs(const TrackPlan& plan, const std::vector<Mark>& marks);

}  // namespace velmor::render
