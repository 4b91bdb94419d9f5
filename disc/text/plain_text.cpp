#include "disc/text/plain_text.h"

#include "disc/text/encoding.h"
#include "disc/text/plain_spelling.h"
#include "disc/text/utf8.h"
#include "disc/text/words.h"

namespace velmor::disc {

namespace {

/// A double quote would end the text early in several readers, a backslash takes the next character
/// with it.
char plainAscii(char c) {
  if (c == '"') return '\'';
  if (c == '\\') return '/';
  return c < 32 || c == 127 ? ' ' : c;
}

void append(PlainText& plain, char32_t c) {
  if (c < 128) {
    plain.text += plainAscii(static_cast<char>(c));
  } else if (const auto spelling = plainSpelling(c)) {
    for (const char letter : *spelling) plain.text += plainAscii(letter);
  } else {
    plain.text += '?';
    plain.letters_lost = true;
  }
}

void shorten(std::string& text) {
  if (text.size() <= kMostCharacters) return;
  const bool inside_word = text[kMostCharacters] != ' ';
  text.resize(kMostCharacters);
  const size_t last_blank = text.rfind(' ');
  if (inside_word && last_blank != std::string::npos && last_blank > kMostCharacters / 2)
    text.resize(last_blank);
}

}  // namespace

PlainText plainText(std::string_view text) {
  PlainText plain;
  const bool latin1 = encodingOf(text) == Encoding::kLatin1;
  if (text.ends_with('\\')) text.remove_suffix(1);
  for (size_t at = 0; at < text.size();) {
    // In an 8-bit encoding a few bytes may look like UTF-8 all the same.
    const Character c =
        latin1 ? Character{static_cast<unsigned char>(text[at]), 1, false} : characterAt(text, at);
    append(plain, c.code);
    at += c.bytes;
  }
  shorten(plain.text);
  plain.text = trimmed(plain.text);
  return plain;
}

}  // namespace velmor::disc
