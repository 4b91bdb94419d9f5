#include "page/markup/markup.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace velmor::page {

namespace {

constexpr std::string_view kMinus = "\u2212";

/// Without a sign, and with a point whatever the locale of the process says.
std::string digitsOf(double value, int digits) {
  std::array<char, 64> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), std::abs(value),
                                 std::chars_format::fixed, digits);
  return {text.data(), end.ptr};
}

bool isZero(const std::string& digits) {
  return digits.find_first_not_of("0.") == std::string::npos;
}

}  // namespace

std::string escaped(std::string_view text) {
  std::string safe;
  safe.reserve(text.size());
  for (const char c : text) {
    if (c == '&')
      safe += "&amp;";
    else if (c == '<')
      safe += "&lt;";
    else if (c == '>')
      safe += "&gt;";
    else if (c == '"')
      safe += "&quot;";
    else if (c == '\'')
      safe += "&#39;";
    else
      safe += c;
  }
  return safe;
}

std::string foreign(std::string_view text) {
  return text.empty() ? std::string() : "<bdi>" + escaped(text) + "</bdi>";
}

std::string decimal(double value, int digits) {
  if (std::isinf(value)) return std::string(value < 0 ? kMinus : "") + "\u221E";
  const std::string text = digitsOf(value, digits);
  return (value < 0 && !isZero(text) ? std::string(kMinus) : std::string()) + text;
}

std::string signedDecimal(double value, int digits) {
  const bool plus = value > 0 && !isZero(digitsOf(value, digits));
  return (plus ? "+" : "") + decimal(value, digits);
}

std::string percent(double part, double whole) {
  return digitsOf(std::clamp(100.0 * part / whole, 0.0, 100.0), 3);
}

}  // namespace velmor::page
