// Audacity label tracks: lines of start, end and text with tabs between, times in seconds.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "disc/failure.h"
#include "host/render/input/marks/mark.h"

namespace velmor::render {

struct LabelTrack {
  std::vector<Mark> marks;  ///< in the file's order, seconds of the timeline
  /// One sentence for each line that could not be used, with its number.
  std::vector<std::string> warnings;
};

/// A label track's text; `name` is what the warnings call it. Never throws for its contents.
LabelTrack parseLabelTrack(std::string_view text, const std::string& name = "the labels");

/// The same from a file; throws `Failure` when it cannot be read, is too large for labels or is a
/// cue sheet.
LabelTrack readLabelTrack(const std::string& path);

}  // namespace velmor::render
