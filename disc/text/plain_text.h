// Texts that every reader takes: ASCII, at most 80 characters, no quote, no backslash.
#pragma once

#include <string>
#include <string_view>

namespace velmor::disc {

struct PlainText {
  std::string text;
  bool letters_lost = false;  ///< some have no spelling in ASCII and became '?'
};

/// ASCII is the one encoding that all readers show alike and that CD-TEXT holds: UTF-8 is stored or
/// shown byte by byte by some, ISO 8859-1 refused by others. Letters take their `plainSpelling`; a
/// double quote becomes an apostrophe, a backslash a slash; what is longer than `kMostCharacters`
/// ends at the last word that fits. `text` may be UTF-8 or ISO 8859-1.
PlainText plainText(std::string_view text);

}  // namespace velmor::disc
