// CD-TEXT's character set, ISO 8859-1 (MMC-3 annex J).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmor::disc {

struct Latin1Text {
  std::string text;
  std::vector<std::string> replaced;  ///< each character that has no place there, as UTF-8, once
};

/// UTF-8 to ISO 8859-1. A character that it lacks becomes its plain spelling (see
/// `plainSpelling`), or '?' where there is none; control characters become blanks; bytes that are
/// no UTF-8 are taken as ISO 8859-1.
Latin1Text toLatin1(std::string_view utf8);

/// ISO 8859-1 to UTF-8.
std::string fromLatin1(std::string_view latin1);

}  // namespace velmor::disc
