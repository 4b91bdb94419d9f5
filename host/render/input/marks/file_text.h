// A text as it stands in an audio file.
#pragma once

#include <string>
#include <string_view>

#include "disc/text/line_of_text.h"
#include "disc/text/utf8.h"

namespace velmor::render {

struct FileText {
  std::string text;            ///< a line of UTF-8
  bool was_converted = false;  ///< it is no UTF-8 in the file, and was read as Windows-1252
};

/// The text in `bytes`, which ends at their first NUL.
inline FileText fileText(std::string_view bytes) {
  return {disc::asLineOfText(bytes), !disc::isUtf8(bytes.substr(0, bytes.find('\0')))};
}

}  // namespace velmor::render
