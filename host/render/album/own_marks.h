// The marks that inputs bring by themselves: where each begins, and its performer and ISRC.
#pragma once

#include <string>
#include <vector>

#include "host/render/album/album.h"
#include "host/render/input/marks/mark.h"
#include "host/render/options/options.h"

namespace velmor::render {

/// One where an input starts (in regions mode, one that it spans), unless a mark of `given`, those
/// that the user or the files have set, makes a track there; and tags for the performer and the
/// ISRC that the disc as a whole does not have. `album` has its inputs, its range and its mode.
std::vector<Mark> ownMarks(const Options& options, const Album& album,
                           const std::string& disc_performer, const std::vector<Mark>& given);

}  // namespace velmor::render
