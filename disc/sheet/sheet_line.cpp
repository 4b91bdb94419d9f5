#include "disc/sheet/sheet_line.h"

#include <algorithm>
#include <array>

#include "disc/text/words.h"

namespace velmor::disc {

namespace {

constexpr std::array<std::string_view, 16> kCommands = {
    "REM",        "TITLE", "PERFORMER", "SONGWRITER", "COMPOSER", "ARRANGER", "MESSAGE", "CATALOG",
    "CDTEXTFILE", "FILE",  "TRACK",     "ISRC",       "FLAGS",    "PREGAP",   "POSTGAP", "INDEX"};

}  // namespace

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
  const size_t last_quote = rest.rfind('"');
  value.closed = last_quote > 0;
  value.text_after = value.closed && last_quote + 1 < rest.size();
  value.bytes = value.closed ? rest.substr(1, last_quote - 1) : rest.substr(1);
  return value;
}

Text valueBeforeWord(std::string_view rest, int line, std::string& after) {
  rest = trimmed(rest);
  const bool quoted = rest.starts_with('"');
  const size_t last_quote = rest.rfind('"');
  size_t split = rest.find_last_of(" \t\v\f");
  if (quoted && last_quote > 0) split = last_quote + 1;
  if (split == std::string_view::npos || (quoted && last_quote == 0)) split = rest.size();
  after = trimmed(rest.substr(split));
  return wholeValue(rest.substr(0, split), line);
}

}  // namespace velmor::disc
