// The marks that an open audio file carries.
#pragma once

#include <sndfile.h>

#include <string>
#include <vector>

#include "disc/audio/file_bytes.h"
#include "host/render/input/marks/mark.h"

namespace velmor::render {

/// Of WAV, RF64 and AIFF files, and of FLAC files that keep a WAV file's chunks. `file` is open on
/// `bytes`. Cue points, labels and regions in ascending start, seconds of the file. What starts
/// behind the file's last frame, where the next input begins, is left out, a region's end is drawn
/// in to it. Damaged marks are no error. Names that are no UTF-8 in the file are added to
/// `converted`.
std::vector<Mark> embeddedMarks(SNDFILE* file, const SF_INFO& info, const disc::FileBytes& bytes,
                                std::vector<std::string>& converted);

}  // namespace velmor::render
