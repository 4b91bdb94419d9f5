#include "host/recording/texts/disc_codes.h"

#include <algorithm>
#include <cctype>

namespace velmor::recording {
namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isCapital(char c) {
  return c >= 'A' && c <= 'Z';
}

std::string withoutSeparators(std::string_view text) {
  std::string result;
  for (const char c : text)
    if (c != '-' && c != ' ')
      result += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return result;
}

/// The digit that makes the sum of the digits, every second one threefold, a multiple of ten.
char checkDigit(const std::string& code) {
  int sum = 0;
  for (size_t i = 0; i < 12; ++i) sum += (code[i] - '0') * (i % 2 == 0 ? 1 : 3);
  return static_cast<char>('0' + (10 - sum % 10) % 10);
}

bool isRecordingCode(const std::string& code) {
  if (code.size() != 12) return false;
  for (size_t i = 0; i < code.size(); ++i) {
    const bool fits = i < 2   ? isCapital(code[i])
                      : i < 5 ? isCapital(code[i]) || isDigit(code[i])
                              : isDigit(code[i]);
    if (!fits) return false;
  }
  return true;
}

}  // namespace

DiscCode mediaCatalogNumber(std::string_view text) {
  std::string code = withoutSeparators(text);
  if (code.empty()) return {};
  if (code.size() == 12) code.insert(code.begin(), '0');
  if (code.size() != 13 || !std::all_of(code.begin(), code.end(), isDigit))
    return {"", "The catalog number \"" + std::string(text) +
                    "\" does not have 13 digits and is left out."};
  const char expected = checkDigit(code);
  if (code.back() == expected) return {code, ""};
  return {code, "The check digit of the catalog number " + code + " should be " + expected +
                    "; it is written as given."};
}

DiscCode recordingCode(std::string_view text) {
  const std::string code = withoutSeparators(text);
  if (code.empty() || isRecordingCode(code)) return {code, ""};
  return {"", "The ISRC \"" + std::string(text) +
                  "\" does not have the form CCXXXYYNNNNN (two letters, three letters or digits, "
                  "seven digits) and is left out."};
}

}  // namespace velmor::recording
