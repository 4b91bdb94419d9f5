#include "check/sheet/command_line.h"

#include <algorithm>
#include <array>

namespace velmor::check {

namespace {

constexpr std::string_view kBlanks = " \t\v\f";

constexpr std::array<std::string_view, 14> kCommands = {
    "REM",   "TITLE", "PERFORMER", "SONGWRITER", "CATALOG", "CDTEXTFILE", "FILE",
    "TRACK", "ISRC",  "FLAGS",     "PREGAP",     "POSTGAP", "INDEX",      "COMPOSER"};

}  // namespace

std::string upperCase(std::string_view text) {
  std::string upper(text);
  for (char& c : upper)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return upper;
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

bool beginsCommand(std::string_view line) {
  std::string_view start = line.substr(0, 64);
  const std::string word = upperCase(takeWord(start));
  return std::find(kCommands.begin(), kCommands.end(), word) != kCommands.end();
}

Text wholeValue(std::string_view rest, int line) {
  rest = trimmed(rest);
  Text value;
  value.line = line;
  value.quoted = rest.starts_with('"');
  if (!value.quoted) {
    value.bytes = rest;
    return value;
  }
  value.closed = rest.size() > 1 && rest.ends_with('"');
  value.bytes = rest.substr(1, rest.size() - (value.closed ? 2 : 1));
  return value;
}

Text valueBeforeWord(std::string_view rest, int line, std::string& after) {
  rest = trimmed(rest);
  const bool quoted = rest.starts_with('"');
  const size_t last_quote = rest.rfind('"');
  size_t split = rest.find_last_of(kBlanks);
  if (quoted && last_quote > 0) split = last_quote + 1;
  if (split == std::string_view::npos || (quoted && last_quote == 0)) split = rest.size();
  after = trimmed(rest.substr(split));
  return wholeValue(rest.substr(0, split), line);
}

int parseNumber(std::string_view text, size_t digits) {
  if (text.empty() || text.size() > digits) return -1;
  int number = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return -1;
    number = number * 10 + (c - '0');
  }
  return number;
}

Msf parseMsf(std::string_view text) {
  const size_t first = text.find(':');
  if (first == std::string_view::npos) return {};
  const size_t second = text.find(':', first + 1);
  if (second == std::string_view::npos) return {};
  return {parseNumber(text.substr(0, first), 6),
          parseNumber(text.substr(first + 1, second - first - 1), 6),
          parseNumber(text.substr(second + 1), 6)};
}

}  // namespace velmor::check
