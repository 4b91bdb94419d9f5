#include "disc/text/encoding.h"

#include <algorithm>

#include "disc/text/utf8.h"

namespace velmor::disc {

Encoding encodingOf(std::string_view text) {
  const auto high = [](char c) { return static_cast<unsigned char>(c) >= 0x80; };
  if (std::none_of(text.begin(), text.end(), high)) return Encoding::kAscii;
  return isUtf8(text) ? Encoding::kUtf8 : Encoding::kLatin1;
}

size_t countCharacters(std::string_view text) {
  if (encodingOf(text) != Encoding::kUtf8) return text.size();
  size_t count = 0;
  for (size_t at = 0; at < text.size(); ++count) at += characterAt(text, at).bytes;
  return count;
}

}  // namespace velmor::disc
