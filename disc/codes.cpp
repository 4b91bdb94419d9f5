#include "disc/codes.h"

#include <algorithm>
#include <cstddef>

namespace velmor::render {

namespace {

constexpr size_t kIsrcLength = 12;
constexpr size_t kCatalogueLength = 13;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isCapital(char c) {
  return c >= 'A' && c <= 'Z';
}
char capital(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// The EAN-13 check digit of the first twelve digits.
char checkDigit(std::string_view digits) {
  int sum = 0;
  for (size_t i = 0; i + 1 < kCatalogueLength; ++i) sum += (digits[i] - '0') * (i % 2 ? 3 : 1);
  return static_cast<char>('0' + (10 - sum % 10) % 10);
}

}  // namespace

std::optional<std::string> normalisedIsrc(std::string_view text) {
  std::string code;
  for (const char c : text) {
    if (c != '-') code += capital(c);
  }
  if (code.size() != kIsrcLength) return std::nullopt;
  for (size_t i = 0; i < kIsrcLength; ++i) {
    const bool right = i < 2   ? isCapital(code[i])
                       : i < 5 ? isCapital(code[i]) || isDigit(code[i])
                               : isDigit(code[i]);
    if (!right) return std::nullopt;
  }
  return code;
}

std::optional<std::string> catalogueFault(std::string_view text) {
  if (!std::all_of(text.begin(), text.end(), isDigit)) return "holds more than digits";
  if (text.size() == kCatalogueLength - 1) {
    return "has 12 digits where 13 are needed; a UPC takes a 0 in front";
  }
  if (text.size() != kCatalogueLength) {
    return "has " + std::to_string(text.size()) + " digits where 13 are needed";
  }
  const char right = checkDigit(text);
  if (text.back() == right) return std::nullopt;
  return std::string("has the check digit ") + text.back() + " where " + right + " is right";
}

}  // namespace velmor::render
