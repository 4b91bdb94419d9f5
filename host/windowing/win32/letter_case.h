// Comparison without regard to letter case, for the names that Win32 compares so.
#pragma once

#include <algorithm>
#include <string_view>

namespace velmor::windowing {

/// Whether two texts differ at most in the case of the letters A to Z.
inline bool sameLetters(std::string_view a, std::string_view b) {
  const auto lower = [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  };
  return std::ranges::equal(a, b, {}, lower, lower);
}

}  // namespace velmor::windowing
