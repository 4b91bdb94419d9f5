// Cue points, labels and regions in the bytes of a WAV file's "cue " and "LIST" chunks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "host/render/input/marks/file_text.h"

namespace velmor::render {

/// A cue point, or a region when `length` is not 0. Frames of the file.
struct WavMark {
  int64_t start = 0;
  int64_t length = 0;
  FileText name;  ///< empty when the file has none
};

enum class ByteOrder { kLittle, kBig };  ///< RIFF is little, RIFX big

/// `cue` and `lists` are the bytes after each chunk's id and size; of the lists only "adtl" count.
/// A cue chunk too short for the number of points it states gives no marks; a list is read as far
/// as it is whole. Any bytes are safe. A name is the label, else the region's text, else the note.
/// The marks come in ascending start, equal ones in the file's order.
std::vector<WavMark> parseWavMarks(std::span<const std::byte> cue,
                                   std::span<const std::span<const std::byte>> lists,
                                   ByteOrder order = ByteOrder::kLittle);

}  // namespace velmor::render
