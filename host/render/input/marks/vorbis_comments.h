// The comments of FLAC and Ogg files, of which the decoder hands on only some.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "disc/audio/file_bytes.h"
#include "host/render/input/marks/tags.h"

namespace velmor::render {

/// The block of comments in a FLAC, Ogg Vorbis or Ogg Opus file, from the maker's name on; empty
/// when there is none, it is damaged or `file` is of another kind.
std::vector<std::byte> vorbisCommentsIn(const disc::FileBytes& file);

/// Adds what such a block says of the songwriter (COMPOSER, several in a row) and the ISRC, the
/// first one in the form of ISO 3901, without dashes and in capitals. Any bytes are safe; a block
/// is read as far as it is whole.
void addVorbisComments(std::span<const std::byte> block, Tags& tags);

/// The text of a cue sheet in such a block (CUESHEET), byte for byte; empty when there is none.
std::string cueSheetComment(std::span<const std::byte> block);

}  // namespace velmor::render
