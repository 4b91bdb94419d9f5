// Names and titles from outside, as a sheet, a report and a terminal need them: one line of UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace velmor::disc {

/// Has a byte below 0x20 or 0x7F, such as a line break, which would tear a line of the sheet.
bool hasControlCharacters(std::string_view text);

/// `bytes` as one line of UTF-8: up to the first NUL, bytes that are not UTF-8 read as Windows-1252
/// (what RIFF texts mostly are; Latin-1 is a part of it), control characters as spaces, none of
/// those at either end.
std::string asLineOfText(std::string_view bytes);

/// `text` for a terminal or JSON: '?' stands for each control character and for each byte that is
/// no UTF-8.
std::string printable(std::string_view text);

}  // namespace velmor::disc
