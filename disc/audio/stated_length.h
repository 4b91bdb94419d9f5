// What the head of a file says of its audio: its kind, where the samples lie, and whether the file
// holds all that it states, and no more than can be read.
#pragma once

#include <cstdint>
#include <optional>

#include "disc/audio/file_bytes.h"

namespace velmor::disc {

/// The kinds of file that cue sheets name.
enum class Container { kWave, kAiff, kFlac, kOther };

Container containerOf(const FileBytes& file);

/// Bytes before the first sample of a WAVE or AIFF file; nothing when it is of another kind or was
/// broken off before them.
std::optional<int64_t> samplesIn(const FileBytes& file);

enum class Extent {
  kWhole,
  kBreaksOff,       ///< a copy or an export that was interrupted
  kSeveralStreams,  ///< Ogg streams one behind the other
};

/// `kBreaksOff` when the audio of a RIFF, RF64, AIFF, AU, W64 or CAF file runs over the file's end,
/// or an Ogg file's last page is cut off or is not the last of its stream: the decoder would take
/// what is there for the whole. `kSeveralStreams` likewise, since the
/// decoder would take the first stream for the whole.
/// Headers of streams, which state the largest size they can, and kinds of file that are not known
/// here count as whole.
Extent extentOf(const FileBytes& file);

}  // namespace velmor::disc
