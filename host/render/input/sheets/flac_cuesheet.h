// The cue sheet that a FLAC file may carry: as a block of its own, or as text among its comments.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "disc/audio/file_bytes.h"
#include "host/render/input/marks/tags.h"
#include "host/render/input/sheets/sheet_marks.h"

namespace velmor::render {

/// A mark where each track of a CUESHEET block begins (RFC 9639, section 8.7), with tags for the
/// ISRCs; `rate` in Hz. Its catalogue number goes to `tags`. No marks from a block with fewer than
/// two audio tracks or from a damaged one. Any bytes are safe.
FileMarks marksOfCuesheetBlock(std::span<const std::byte> block, int rate, Tags& tags);

/// The same of the sheet that `file` carries; the text, which has titles, before the block. What
/// the sheet says of the disc goes to the `tags` that are empty, and a clause for each kind of
/// thing that marks cannot say to `warnings`; `path` is for these.
FileMarks marksOfCarriedSheet(const disc::FileBytes& file, const std::string& path, int rate,
                              Tags& tags, std::vector<std::string>& warnings);

}  // namespace velmor::render
