#include "disc/text/line_of_text.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "disc/text/utf8.h"

namespace velmor::disc {

namespace {

bool isControl(char c) {
  const auto value = static_cast<unsigned char>(c);
  return value < 0x20 || value == 0x7f;
}

/// What the bytes 0x80 to 0x9F are in Windows-1252 (Unicode's CP1252.TXT); a space where it has
/// nothing.
constexpr std::array<char16_t, 32> kUpperControls{
    0x20ac, 0x0020, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x0020, 0x017d, 0x0020, 0x0020, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x0020, 0x017e, 0x0178};

std::string fromWindows1252(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() * 2);
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    appendUtf8(text, value >= 0x80 && value < 0xa0 ? kUpperControls[value - 0x80] : value);
  }
  return text;
}

}  // namespace

bool hasControlCharacters(std::string_view text) {
  return std::any_of(text.begin(), text.end(), isControl);
}

std::string asLineOfText(std::string_view bytes) {
  bytes = bytes.substr(0, bytes.find('\0'));
  std::string text = isUtf8(bytes) ? std::string(bytes) : fromWindows1252(bytes);
  std::replace_if(text.begin(), text.end(), isControl, ' ');
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string printable(std::string_view text) {
  std::string clean;
  for (size_t at = 0; at < text.size();) {
    const Character c = characterAt(text, at);
    const bool control = c.code < 32 || (c.code >= 127 && c.code < 160);
    if (control || !c.is_utf8)
      clean += '?';
    else
      clean += text.substr(at, c.bytes);
    at += c.bytes;
  }
  return clean;
}

}  // namespace velmor::disc
