// The marks that an open audio file carries.
#pragma once

#include <sndfile.h>

#include <vector>

#include "host/render/input/audio_input.h"

namespace velmor::render {

/// Cue points, labels and regions in ascending start, seconds of the file. What starts behind
/// the file's last frame, where the next input begins, is left out, a region's end is drawn in to
/// it. Damaged marks are no error.
std::vector<Mark> embeddedMarks(SNDFILE* file, const SF_INFO& info);

}  // namespace velmor::render
