// Which track each ISRC of a project ends up in.
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

/// One ISRC tag and what becomes of it.
struct IsrcPlace {
  std::string code;              ///< as the tag has it
  double position = 0.0;         ///< project seconds
  int input = 0;                 ///< as the mark has it
  std::vector<size_t> given_to;  ///< the tracks, from 0, that bear it in the sheet
  /// The track that the code lies in but that already bears an earlier one.
  std::optional<size_t> second_in;
};

/// The ISRCs of `marks` in their order. As in the module, each track takes the first in its stretch
/// of the project; a millisecond before counts as in it.
std::vector<IsrcPlace> placesOfIsrcs(const TrackPlan& plan, const std::vector<Mark>& marks);

}  // namespace velmor::render
