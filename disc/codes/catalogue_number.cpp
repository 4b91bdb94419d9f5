#include "disc/codes/catalogue_number.h"

#include <algorithm>
#include <cassert>

#include "disc/text/words.h"

namespace velmor::disc {

namespace {

constexpr size_t kEanLength = 13;
constexpr size_t kUpcLength = 12;

}  // namespace

char eanCheckDigit(std::string_view digits) {
  assert(digits.size() >= kEanLength - 1);
  int sum = 0;
  for (size_t i = 0; i < kEanLength - 1; ++i) {
    assert(isDigit(digits[i]));
    sum += (digits[i] - '0') * (i % 2 == 0 ? 1 : 3);
  }
  return static_cast<char>('0' + (10 - sum % 10) % 10);
}

bool isCatalogueNumber(std::string_view text) {
  return !catalogueFault(text);
}

std::string bareCatalogueNumber(std::string_view text) {
  std::string bare = withoutSeparators(text);
  if (bare.size() == kUpcLength && allDigits(bare)) bare.insert(bare.begin(), '0');
  return bare;
}

std::optional<std::string> catalogueFault(std::string_view text) {
  if (!std::all_of(text.begin(), text.end(), isDigit)) return "holds more than digits";
  if (text.size() == kUpcLength) {
    return "has 12 digits where 13 are needed; a UPC takes a 0 in front";
  }
  if (text.size() != kEanLength) {
    return "has " + std::to_string(text.size()) + " digits where 13 are needed";
  }
  const char right = eanCheckDigit(text);
  if (text.back() == right) return std::nullopt;
  return std::string("has the check digit ") + text.back() + " where " + right + " is right";
}

}  // namespace velmor::disc
