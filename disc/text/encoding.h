// In which encoding a text of a cue sheet can be, judged by its bytes.
#pragma once

#include <cstddef>
#include <string_view>

namespace velmor::disc {

enum class Encoding { kAscii, kUtf8, kLatin1 };

/// Latin 1 stands for every 8-bit encoding: bytes above 127 that are no UTF-8.
Encoding encodingOf(std::string_view text);

/// Characters where the text is UTF-8, else bytes.
size_t countCharacters(std::string_view text);

/// What many readers of cue sheets take of one text, in characters.
inline constexpr size_t kMostCharacters = 80;

}  // namespace velmor::disc
