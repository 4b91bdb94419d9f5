// Whether a file holds all the audio bytes its header states.
#pragma once

#include <cstdint>

namespace velmor::render {

/// True when the audio of a RIFF, RF64, AIFF, AU or W64 file, or the last page of an Ogg stream,
/// runs over the file's `size` bytes: a copy or an export that was interrupted. The decoder would
/// take what is there for the whole. Headers of streams, which state the largest size they can, and
/// kinds of file that are not known here count as whole. `descriptor`'s position stays.
bool audioRunsOverTheEnd(int descriptor, int64_t size);

}  // namespace velmor::render
