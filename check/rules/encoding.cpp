#include "check/rules/encoding.h"

#include <algorithm>

namespace velmor::check {

namespace {

constexpr char32_t kNone = 0xFFFD;

/// Bytes that follow a first byte of UTF-8; -1 where it cannot be one.
int followers(unsigned char first) {
  if (first < 0x80) return 0;
  if (first >= 0xC2 && first < 0xE0) return 1;
  if (first >= 0xE0 && first < 0xF0) return 2;
  if (first >= 0xF0 && first < 0xF5) return 3;
  return -1;
}

}  // namespace

char32_t nextCharacter(std::string_view text, size_t& at) {
  const auto first = static_cast<unsigned char>(text[at]);
  const int count = followers(first);
  const size_t begin = at++;
  if (count <= 0) return count == 0 ? first : kNone;
  if (text.size() - begin <= static_cast<size_t>(count)) return kNone;
  char32_t c = first & (0x3Fu >> count);
  for (size_t i = 1; i <= static_cast<size_t>(count); ++i) {
    const auto byte = static_cast<unsigned char>(text[begin + i]);
    if ((byte & 0xC0) != 0x80) return kNone;
    c = c << 6 | (byte & 0x3F);
  }
  const bool too_long = (count == 2 && c < 0x800) || (count == 3 && c < 0x10000);
  if (too_long || c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) return kNone;
  at = begin + static_cast<size_t>(count) + 1;
  return c;
}

std::string printable(std::string_view text) {
  std::string clean;
  for (size_t at = 0; at < text.size();) {
    const size_t begin = at;
    const char32_t c = nextCharacter(text, at);
    const bool fault = c == 0xFFFD && at - begin == 1;
    const bool control = c < 32 || (c >= 127 && c < 160);
    if (fault || control)
      clean += '?';
    else
      clean += text.substr(begin, at - begin);
  }
  return clean;
}

Encoding encodingOf(std::string_view text) {
  const auto high = [](char c) { return static_cast<unsigned char>(c) >= 0x80; };
  if (std::none_of(text.begin(), text.end(), high)) return Encoding::kAscii;
  for (size_t at = 0; at < text.size();) {
    const size_t begin = at;
    // U+FFFD itself may stand in a text: it takes three bytes, a fault takes one.
    if (nextCharacter(text, at) == kNone && at - begin == 1) return Encoding::kLatin1;
  }
  return Encoding::kUtf8;
}

size_t characters(std::string_view text) {
  if (encodingOf(text) != Encoding::kUtf8) return text.size();
  size_t count = 0;
  for (size_t at = 0; at < text.size(); ++count) nextCharacter(text, at);
  return count;
}

}  // namespace velmor::check
