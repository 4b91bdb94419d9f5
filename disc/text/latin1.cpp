#include "disc/text/latin1.h"

#include <algorithm>

#include "disc/text/plain_spelling.h"
#include "disc/text/utf8.h"

namespace velmor::disc {

namespace {

bool isLatin1Control(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

}  // namespace

Latin1Text toLatin1(std::string_view utf8) {
  Latin1Text result;
  for (size_t at = 0; at < utf8.size();) {
    const Character character = characterAt(utf8, at);
    const std::string bytes(utf8.substr(at, character.bytes));
    at += character.bytes;
    if (isLatin1Control(character.code)) {
      result.text += ' ';
    } else if (character.code <= 0xFF) {
      result.text += static_cast<char>(character.code);
    } else {
      result.text += plainSpelling(character.code).value_or("?");
      if (std::find(result.replaced.begin(), result.replaced.end(), bytes) == result.replaced.end())
        result.replaced.push_back(bytes);
    }
  }
  return result;
}

std::string fromLatin1(std::string_view latin1) {
  std::string utf8;
  for (const char c : latin1) appendUtf8(utf8, static_cast<unsigned char>(c));
  return utf8;
}

}  // namespace velmor::disc
