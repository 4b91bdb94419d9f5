// What an audio file says of its music.
#pragma once

#include <string>
#include <vector>

#include "host/render/input/marks/file_text.h"

namespace velmor::render {

/// Texts found in the file, UTF-8; empty when absent. The ISRC has 12 characters without dashes.
struct Tags {
  std::string title, artist, album, songwriter, isrc, catalogue, date, genre;
  /// Those of the texts, and of the names of the file's marks, that are no UTF-8 in the file.
  std::vector<std::string> converted;

  /// The text in a tag's `bytes`; notes when it has to be converted.
  std::string read(std::string_view bytes) {
    const FileText read = fileText(bytes);
    if (read.was_converted) converted.push_back(read.text);
    return read.text;
  }
};

}  // namespace velmor::render
