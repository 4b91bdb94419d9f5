// Warnings about marks and times which the user gave and which do not get on the disc.
#pragma once

#include <string>
#include <vector>

#include "host/render/album/album.h"
#include "host/render/options/options.h"

namespace velmor::render {

/// Adds to the album's warnings: an --end past the inputs, and those of `marks` (seconds of the
/// timeline) that lie beyond the audio or reach beyond it.
void warnBeyondAudio(const Options& options, const std::vector<Mark>& marks, Album& album);

/// Adds a warning for those of `left_out` that lie within the audio but outside --start and --end.
void warnOutsideRange(const Options& options, const std::vector<Mark>& left_out, Album& album);

}  // namespace velmor::render
