// Marks that people give beside the audio: a label track, single markers and regions.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "disc/failure.h"
#include "host/render/input/audio_input.h"

namespace velmor::render {

/// A time as seconds ("12.5"), MM:SS.mmm or MM:SS:FF (75 frames a second), never negative. Throws
/// `Failure`.
double parseTime(std::string_view text);
/// TIME=NAME. Throws `Failure`.
Mark parseMarkerOption(std::string_view text);
/// START-END=NAME. Throws `Failure`.
Mark parseRegionOption(std::string_view text);

struct LabelTrack {
  std::vector<Mark> marks;  ///< in the file's order
  std::vector<std::string>
      warnings;  ///< one sentence for each line that could not be used, with its number
};
/// An Audacity label track's text; `name` is what the warnings call it. Never throws for its
/// contents.
LabelTrack parseLabelTrack(std::string_view text, const std::string& name = "the labels");
/// The same from a file; throws `Failure` when it cannot be read.
LabelTrack readLabelTrack(const std::string& path);

}  // namespace velmor::render
