// Reading UTF-8 (RFC 3629), and what the programs do with bytes that are none.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmor::disc {

/// One character of a text.
struct Character {
  char32_t code = 0;  ///< the byte itself where the bytes are no UTF-8
  size_t bytes = 1;   ///< that it takes; 1 where they are no UTF-8
  bool is_utf8 = true;
};

/// The character that begins at byte `at`, which is below `text.size()`. Overlong forms, surrogates
/// and what lies above U+10FFFF are no UTF-8.
Character characterAt(std::string_view text, size_t at);

/// Appends a character below U+10000.
void appendUtf8(std::string& text, unsigned code);

/// Every byte of `text` belongs to a character.
bool isUtf8(std::string_view text);

/// The first bytes of `text`, at most `limit`, cut between two characters; where the bytes are no
/// UTF-8, between any two.
std::string_view beginningOf(std::string_view text, size_t limit);

}  // namespace velmor::disc
