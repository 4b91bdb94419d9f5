#include "disc/text/words.h"

#include <algorithm>

namespace velmor::disc {

namespace {

// A sheet can be 16 MiB of short words: the library's search for one of several characters, a call
// for every character of the text, would take most of the time that reading it does.
bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}

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
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view takeWord(std::string_view& rest) {
  rest = trimmed(rest);
  const auto end = std::find_if(rest.begin(), rest.end(), isBlank);
  const std::string_view word = rest.substr(0, static_cast<size_t>(end - rest.begin()));
  rest = trimmed(rest.substr(word.size()));
  return word;
}

}  // namespace velmor::disc
