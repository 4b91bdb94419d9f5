// Where on the disc the samples of its images clip.
#pragma once

#include "check/image/audio_map.h"
#include "page/album/page_disc.h"

namespace velmor::page {

/// Adds the runs that begin in the stretch `run` of the image that `map` was made from.
void addClipped(const check::AudioMap& map, const AudioRun& run, PageDisc& disc);

}  // namespace velmor::page
