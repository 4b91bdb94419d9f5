#include "host/recording/texts/latin1.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace velmor::recording {
namespace {

struct Character {
  uint32_t code;
  size_t length;  // bytes
};

bool continues(std::string_view text, size_t at) {
  return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

uint32_t tail(std::string_view text, size_t at) {
  return static_cast<unsigned char>(text[at]) & 0x3FU;
}

/// The character at `at`; a byte that begins no UTF-8 sequence stands for itself.
Character decode(std::string_view text, size_t at) {
  const uint32_t first = static_cast<unsigned char>(text[at]);
  const Character itself{first, 1};
  size_t length = 0;
  uint32_t code = 0;
  uint32_t lowest = 0;
  if (first >= 0xC2 && first <= 0xDF) {
    length = 2, code = first & 0x1FU, lowest = 0x80;
  } else if (first >= 0xE0 && first <= 0xEF) {
    length = 3, code = first & 0x0FU, lowest = 0x800;
  } else if (first >= 0xF0 && first <= 0xF4) {
    length = 4, code = first & 0x07U, lowest = 0x10000;
  } else {
    return itself;
  }
  for (size_t i = 1; i < length; ++i) {
    if (!continues(text, at + i)) return itself;
    code = code << 6 | tail(text, at + i);
  }
  return code < lowest ? itself : Character{code, length};
}

constexpr std::array<std::pair<uint32_t, const char*>, 22> kPlainForms{{
    {0x2010, "-"},  {0x2011, "-"},    {0x2012, "-"},  {0x2013, "-"},    {0x2014, "-"},
    {0x2015, "-"},  {0x2018, "'"},    {0x2019, "'"},  {0x201A, ","},    {0x201B, "'"},
    {0x201C, "\""}, {0x201D, "\""},   {0x201E, "\""}, {0x2022, "\xB7"}, {0x2026, "..."},
    {0x2032, "'"},  {0x2033, "\""},   {0x0152, "OE"}, {0x0153, "oe"},   {0x2122, "TM"},
    {0x2009, " "},  {0x202F, "\xA0"},
}};

std::string plainForm(uint32_t code) {
  const auto* found = std::find_if(kPlainForms.begin(), kPlainForms.end(),
                                   [code](const auto& form) { return form.first == code; });
  return found != kPlainForms.end() ? found->second : "?";
}

bool isControl(uint32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

}  // namespace

Latin1Text toLatin1(std::string_view utf8) {
  Latin1Text result;
  for (size_t at = 0; at < utf8.size();) {
    const Character character = decode(utf8, at);
    const std::string bytes(utf8.substr(at, character.length));
    at += character.length;
    if (isControl(character.code)) {
      result.text += ' ';
    } else if (character.code <= 0xFF) {
      result.text += static_cast<char>(character.code);
    } else {
      result.text += plainForm(character.code);
      if (std::find(result.replaced.begin(), result.replaced.end(), bytes) == result.replaced.end())
        result.replaced.push_back(bytes);
    }
  }
  return result;
}

}  // namespace velmor::recording
