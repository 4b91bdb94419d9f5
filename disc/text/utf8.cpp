#include "disc/text/utf8.h"

#include <algorithm>
#include <cassert>

namespace velmor::disc {

namespace {

/// Bytes that follow a first byte of UTF-8; -1 where it cannot be one.
int followers(unsigned char first) {
  if (first < 0x80) return 0;
  if (first >= 0xC2 && first < 0xE0) return 1;
  if (first >= 0xE0 && first < 0xF0) return 2;
  if (first >= 0xF0 && first < 0xF5) return 3;
  return -1;
}

bool continues(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

}  // namespace

Character characterAt(std::string_view text, size_t at) {
  assert(at < text.size());
  const auto first = static_cast<unsigned char>(text[at]);
  const Character itself{first, 1, false};
  const int count = followers(first);
  if (count == 0) return {first, 1, true};
  if (count < 0 || text.size() - at <= static_cast<size_t>(count)) return itself;
  char32_t code = first & (0x3Fu >> count);
  for (size_t i = 1; i <= static_cast<size_t>(count); ++i) {
    if (!continues(text[at + i])) return itself;
    code = code << 6 | (static_cast<unsigned char>(text[at + i]) & 0x3F);
  }
  const bool overlong = (count == 2 && code < 0x800) || (count == 3 && code < 0x10000);
  const bool surrogate = code >= 0xD800 && code < 0xE000;
  if (overlong || surrogate || code > 0x10FFFF) return itself;
  return {code, static_cast<size_t>(count) + 1, true};
}

void appendUtf8(std::string& text, unsigned code) {
  if (code < 0x80) {
    text += static_cast<char>(code);
    return;
  }
  if (code < 0x800) {
    text += static_cast<char>(0xc0 | code >> 6);
  } else {
    text += static_cast<char>(0xe0 | code >> 12);
    text += static_cast<char>(0x80 | (code >> 6 & 0x3f));
  }
  text += static_cast<char>(0x80 | (code & 0x3f));
}

bool isUtf8(std::string_view text) {
  for (size_t at = 0; at < text.size();) {
    const Character c = characterAt(text, at);
    if (!c.is_utf8) return false;
    at += c.bytes;
  }
  return true;
}

std::string_view beginningOf(std::string_view text, size_t limit) {
  if (text.size() <= limit) return text;
  // The one character that reaches across the limit, if there is one, begins within three bytes of
  // it.
  for (size_t back = 1; back <= std::min<size_t>(limit, 3); ++back) {
    if (characterAt(text, limit - back).bytes > back) return text.substr(0, limit - back);
  }
  return text.substr(0, limit);
}

}  // namespace velmor::disc
