// The words that a cue sheet knows for what a track is.
#pragma once

#include <string_view>

namespace velmor::disc {

/// AUDIO and the modes of data tracks, in capitals.
bool isTrackMode(std::string_view word);
/// DCP (copies permitted), 4CH (four channels), PRE (pre-emphasis), SCMS; in capitals.
bool isFlag(std::string_view word);

}  // namespace velmor::disc
