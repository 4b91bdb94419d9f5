// What an audio file says of its music.
#pragma once

#include <string>

namespace velmor::render {

/// Texts found in the file, UTF-8; empty when absent. The ISRC has 12 characters without dashes.
struct Tags {
  std::string title, artist, album, songwriter, isrc;
};

}  // namespace velmor::render
