#include "check/rules/codes.h"

#include <algorithm>

#include "check/sheet/command_line.h"

namespace velmor::check {

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isLetter(char c) {
  return c >= 'A' && c <= 'Z';
}

}  // namespace

bool allDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

char eanCheckDigit(std::string_view digits) {
  int sum = 0;
  for (size_t i = 0; i < 12; ++i) sum += (digits[i] - '0') * (i % 2 == 0 ? 1 : 3);
  return static_cast<char>('0' + (10 - sum % 10) % 10);
}

bool isMcn(std::string_view text) {
  return text.size() == 13 && allDigits(text) && eanCheckDigit(text) == text[12];
}

bool isIsrc(std::string_view text) {
  if (text.size() != 12) return false;
  const auto letter_or_digit = [](char c) { return isLetter(c) || isDigit(c); };
  return std::all_of(text.begin(), text.begin() + 2, isLetter) &&
         std::all_of(text.begin() + 2, text.begin() + 5, letter_or_digit) &&
         std::all_of(text.begin() + 5, text.end(), isDigit);
}

std::string bareIsrc(std::string_view text) {
  std::string bare = upperCase(text);
  std::erase_if(bare, [](char c) { return c == '-' || c == ' '; });
  return bare;
}

}  // namespace velmor::check
