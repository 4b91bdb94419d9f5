#include "disc/codes/isrc.h"

#include <algorithm>

#include "disc/text/words.h"

namespace velmor::disc {

namespace {

constexpr size_t kIsrcLength = 12;

bool isCapital(char c) {
  return c >= 'A' && c <= 'Z';
}
bool isCapitalOrDigit(char c) {
  return isCapital(c) || isDigit(c);
}

}  // namespace

bool isIsrc(std::string_view text) {
  if (text.size() != kIsrcLength) return false;
  return std::all_of(text.begin(), text.begin() + 2, isCapital) &&
         std::all_of(text.begin() + 2, text.begin() + 5, isCapitalOrDigit) &&
         std::all_of(text.begin() + 5, text.end(), isDigit);
}

std::string bareIsrc(std::string_view text) {
  return upperCase(withoutSeparators(text));
}

std::optional<std::string> normalisedIsrc(std::string_view text) {
  std::string bare = bareIsrc(text);
  if (!isIsrc(bare)) return std::nullopt;
  return bare;
}

}  // namespace velmor::disc
