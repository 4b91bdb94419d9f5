#include "check/portable/plain_text.h"

#include <array>

#include "check/rules/encoding.h"
#include "check/sheet/command_line.h"

namespace velmor::check {

namespace {

constexpr size_t kMostCharacters = 80;

// U+00A0 to U+00FF, then U+0100 to U+017F. Null: no spelling.
constexpr std::array<const char*, 96> kLatin1 = {
    " ",     "!", "c",   "GBP", nullptr, "JPY", "|",   nullptr, nullptr, "(C)", "a",     "'",
    nullptr, "-", "(R)", "-",   nullptr, "+-",  "2",   "3",     "'",     "u",   nullptr, ".",
    ",",     "1", "o",   "'",   "1/4",   "1/2", "3/4", "?",     "A",     "A",   "A",     "A",
    "A",     "A", "AE",  "C",   "E",     "E",   "E",   "E",     "I",     "I",   "I",     "I",
    "D",     "N", "O",   "O",   "O",     "O",   "O",   "x",     "O",     "U",   "U",     "U",
    "U",     "Y", "Th",  "ss",  "a",     "a",   "a",   "a",     "a",     "a",   "ae",    "c",
    "e",     "e", "e",   "e",   "i",     "i",   "i",   "i",     "d",     "n",   "o",     "o",
    "o",     "o", "o",   "/",   "o",     "u",   "u",   "u",     "u",     "y",   "th",    "y"};

constexpr std::array<const char*, 128> kLatinExtendedA = {
    "A", "a", "A",  "a",  "A", "a", "C", "c", "C", "c",  "C", "c", "C", "c", "D", "d",   // 0100
    "D", "d", "E",  "e",  "E", "e", "E", "e", "E", "e",  "E", "e", "G", "g", "G", "g",   // 0110
    "G", "g", "G",  "g",  "H", "h", "H", "h", "I", "i",  "I", "i", "I", "i", "I", "i",   // 0120
    "I", "i", "IJ", "ij", "J", "j", "K", "k", "k", "L",  "l", "L", "l", "L", "l", "L",   // 0130
    "l", "L", "l",  "N",  "n", "N", "n", "N", "n", "'n", "N", "n", "O", "o", "O", "o",   // 0140
    "O", "o", "OE", "oe", "R", "r", "R", "r", "R", "r",  "S", "s", "S", "s", "S", "s",   // 0150
    "S", "s", "T",  "t",  "T", "t", "T", "t", "U", "u",  "U", "u", "U", "u", "U", "u",   // 0160
    "U", "u", "U",  "u",  "W", "w", "Y", "y", "Y", "Z",  "z", "Z", "z", "Z", "z", "s"};  // 0170

const char* punctuation(char32_t c) {
  switch (c) {
    case 0x2018:
    case 0x2019:
    case 0x201A:
    case 0x201B:
    case 0x2032:
    case 0x201C:
    case 0x201D:
    case 0x201E:
    case 0x201F:
    case 0x2033:
    case 0x2039:
    case 0x203A:
      return "'";
    case 0x2010:
    case 0x2011:
    case 0x2012:
    case 0x2013:
    case 0x2014:
    case 0x2015:
    case 0x2212:
      return "-";
    case 0x2026:
      return "...";
    case 0x2022:
      return "*";
    case 0x20AC:
      return "EUR";
    case 0x2116:
      return "No.";
    case 0x2122:
      return "(TM)";
    case 0x0218:
      return "S";
    case 0x0219:
      return "s";
    case 0x021A:
      return "T";
    case 0x021B:
      return "t";
    default:
      return c >= 0x2000 && c <= 0x200A ? " " : nullptr;
  }
}

const char* spelling(char32_t c) {
  if (c >= 0xA0 && c <= 0xFF) return kLatin1[c - 0xA0];
  if (c >= 0x100 && c <= 0x17F) return kLatinExtendedA[c - 0x100];
  return punctuation(c);
}

/// Marks that stand behind their letter (U+0300 to U+036F), a byte-order mark, joiners.
bool leavesNoTrace(char32_t c) {
  return (c >= 0x300 && c <= 0x36F) || c == 0xFEFF || (c >= 0x200B && c <= 0x200F);
}

void append(PlainText& plain, char32_t c) {
  if (leavesNoTrace(c)) return;
  if (c == '"') {
    plain.text += '\'';
  } else if (c == '\\') {
    plain.text += '/';
  } else if (c < 32 || c == 127) {
    plain.text += ' ';
  } else if (c < 128) {
    plain.text += static_cast<char>(c);
  } else if (const char* spelled = spelling(c)) {
    plain.text += spelled;
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
  for (size_t at = 0; at < text.size();)
    append(plain, latin1 ? static_cast<unsigned char>(text[at++]) : nextCharacter(text, at));
  shorten(plain.text);
  plain.text = trimmed(plain.text);
  return plain;
}

}  // namespace velmor::check
