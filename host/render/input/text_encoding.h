// Names and titles as the sheet and the report need them: UTF-8 without control characters.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace velmor::render {

/// `bytes` as the characters they may be.
inline std::string_view charactersOf(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isUtf8(std::string_view bytes);
/// Has a byte below 0x20 or 0x7F, such as a line break, which would tear a line of the sheet.
bool hasControlCharacters(std::string_view text);
/// `bytes` as one line of UTF-8: up to the first NUL, bytes that are not UTF-8 read as Windows-1252
/// (what RIFF texts mostly are; Latin-1 is a part of it), control characters as spaces, none of
/// those at either end.
std::string asLineOfText(std::string_view bytes);

}  // namespace velmor::render
