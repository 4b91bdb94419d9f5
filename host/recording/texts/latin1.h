// CD-TEXT's character set, ISO 8859-1.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmor::recording {

struct Latin1Text {
  std::string text;
  std::vector<std::string> replaced;  ///< each character that has no place there, as UTF-8, once
};

/// UTF-8 to ISO 8859-1. Typographic quotes, dashes and the like become their plain forms, other
/// characters '?', control characters a space; bytes that are no UTF-8 are taken as ISO 8859-1.
Latin1Text toLatin1(std::string_view utf8);

}  // namespace velmor::recording
