// Small changes to ASCII text that mean the same in every program, whatever the locale.
#pragma once

#include <string>
#include <string_view>

namespace velmor::disc {

inline bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
/// One digit or more, and nothing else.
bool allDigits(std::string_view text);

/// The letters a to z as capitals; all other bytes stay.
std::string upperCase(std::string_view text);
/// Without dashes and blanks, which group a code for people.
std::string withoutSeparators(std::string_view text);

/// Without the blanks and tabs at both ends.
std::string_view trimmed(std::string_view text);
/// Takes the first word off `rest`, and the blanks around it. Empty when there is none.
std::string_view takeWord(std::string_view& rest);

}  // namespace velmor::disc
