// Warnings about marks and times which the user gave and which do not get on the disc.
#pragma once

#include <string>
#include <vector>

#include "host/render/album/album.h"
#include "host/render/options/options.h"

namespace velmor::render {

/// Adds to the album's warnings: an end past the inputs, and marks of `marks` (the timeline's) that
/// lie or reach beyond the audio.
void warnBeyondAudio(const Options& options, const std::vector<Mark>& marks, Album& album);

/// The same for marks that the range leaves out though there is audio where they lie.
void warnOutsideRange(const Options& options, const std::vector<Mark>& left_out, Album& album);

}  // namespace velmor::render
