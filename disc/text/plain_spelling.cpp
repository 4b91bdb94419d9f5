#include "disc/text/plain_spelling.h"

#include <array>

namespace velmor::disc {

namespace {

// U+00A0 to U+00FF, then U+0100 to U+017F. Null: no spelling.
constexpr std::array<const char*, 96> kLatin1Spellings = {
    " ",     "!", "c",   "GBP", nullptr, "JPY", "|",   nullptr, nullptr, "(C)", "a",     "'",
    nullptr, "-", "(R)", "-",   nullptr, "+-",  "2",   "3",     "'",     "u",   nullptr, ".",
    ",",     "1", "o",   "'",   "1/4",   "1/2", "3/4", "?",     "A",     "A",   "A",     "A",
    "A",     "A", "AE",  "C",   "E",     "E",   "E",   "E",     "I",     "I",   "I",     "I",
    "D",     "N", "O",   "O",   "O",     "O",   "O",   "x",     "O",     "U",   "U",     "U",
    "U",     "Y", "Th",  "ss",  "a",     "a",   "a",   "a",     "a",     "a",   "ae",    "c",
    "e",     "e", "e",   "e",   "i",     "i",   "i",   "i",     "d",     "n",   "o",     "o",
    "o",     "o", "o",   "/",   "o",     "u",   "u",   "u",     "u",     "y",   "th",    "y"};

constexpr std::array<const char*, 128> kExtendedASpellings = {
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
    case 0x2039:
    case 0x203A:
      return "'";
    case 0x201C:
    case 0x201D:
    case 0x201E:
    case 0x201F:
    case 0x2033:
      return "\"";
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
      return (c >= 0x2000 && c <= 0x200A) || c == 0x202F ? " " : nullptr;
  }
}

bool leavesNoTrace(char32_t c) {
  const bool mark = c >= 0x300 && c <= 0x36F;
  const bool joiner = c >= 0x200B && c <= 0x200F;
  return mark || joiner || c == 0xFEFF;
}

const char* spellingOf(char32_t c) {
  if (leavesNoTrace(c)) return "";
  if (c >= 0xA0 && c <= 0xFF) return kLatin1Spellings[c - 0xA0];
  if (c >= 0x100 && c <= 0x17F) return kExtendedASpellings[c - 0x100];
  return punctuation(c);
}

}  // namespace

std::optional<std::string_view> plainSpelling(char32_t character) {
  const char* const spelling = spellingOf(character);
  if (spelling == nullptr) return std::nullopt;
  return spelling;
}

}  // namespace velmor::disc
