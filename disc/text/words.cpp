#include "disc/text/words.h"

#include <algorithm>

namespace velmor::disc {

namespace {

constexpr std::string_view kBlanks = " \t\v\f";

}  // namespace

bool allDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

std::string upperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return upper;
}

std::string withoutSeparators(std::string_view text) {
  std::string bare(text);
  std::erase_if(bare, [](char c) { return c == '-' || c == ' '; });
  return bare;
}

std::string_view trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string_view takeWord(std::string_view& rest) {
  rest = trimmed(rest);
  const std::string_view word = rest.substr(0, rest.find_first_of(kBlanks));
  rest = trimmed(rest.substr(word.size()));
  return word;
}

}  // namespace velmor::disc
