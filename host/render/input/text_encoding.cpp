#include "host/render/input/text_encoding.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace velmor::render {
namespace {

unsigned byteAt(std::string_view bytes, size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

bool isControl(char c) {
  const auto value = static_cast<unsigned char>(c);
  return value < 0x20 || value == 0x7f;
}

/// Length of the well-formed sequence at `at`, 0 if there is none (Unicode, table 3-7).
size_t sequenceLength(std::string_view bytes, size_t at) {
  const unsigned lead = byteAt(bytes, at);
  if (lead < 0x80) return 1;
  size_t length = 0;
  unsigned low = 0x80;
  unsigned high = 0xbf;
  if (lead >= 0xc2 && lead <= 0xdf) {
    length = 2;
  } else if (lead >= 0xe0 && lead <= 0xef) {
    length = 3;
    if (lead == 0xe0) low = 0xa0;
    if (lead == 0xed) high = 0x9f;
  } else if (lead >= 0xf0 && lead <= 0xf4) {
    length = 4;
    if (lead == 0xf0) low = 0x90;
    if (lead == 0xf4) high = 0x8f;
  }
  if (length == 0 || bytes.size() - at < length) return 0;
  for (size_t i = 1; i < length; ++i) {
    const unsigned next = byteAt(bytes, at + i);
    if (next < low || next > high) return 0;
    low = 0x80;
    high = 0xbf;
  }
  return length;
}

/// What the bytes 0x80 to 0x9F are in Windows-1252 (Unicode's CP1252.TXT); a space where it has
/// nothing.
constexpr std::array<char16_t, 32> kUpperControls{
    0x20ac, 0x0020, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x0020, 0x017d, 0x0020, 0x0020, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022,
    0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0x0020, 0x017e, 0x0178};

/// `value` below U+10000.
void appendUtf8(std::string& text, unsigned value) {
  if (value < 0x80) {
    text += static_cast<char>(value);
    return;
  }
  if (value < 0x800) {
    text += static_cast<char>(0xc0 | value >> 6);
  } else {
    text += static_cast<char>(0xe0 | value >> 12);
    text += static_cast<char>(0x80 | (value >> 6 & 0x3f));
  }
  text += static_cast<char>(0x80 | (value & 0x3f));
}

std::string fromWindows1252(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() * 2);
  for (size_t i = 0; i < bytes.size(); ++i) {
    const unsigned value = byteAt(bytes, i);
    appendUtf8(text, value >= 0x80 && value < 0xa0 ? kUpperControls[value - 0x80] : value);
  }
  return text;
}

}  // namespace

bool isUtf8(std::string_view bytes) {
  for (size_t at = 0; at < bytes.size();) {
    const size_t length = sequenceLength(bytes, at);
    if (length == 0) return false;
    at += length;
  }
  return true;
}

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

}  // namespace velmor::render
