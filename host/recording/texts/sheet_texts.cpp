#include "host/recording/texts/sheet_texts.h"

#include <cctype>
#include <fstream>
#include <iterator>

#include "disc/failure.h"
#include "disc/text/phrases.h"

namespace velmor::recording {
namespace {

using disc::inQuotes;

constexpr size_t kLongestLine = 4095;  // characters of a line that our sheets cut, its end included
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view trim(std::string_view text) {
  const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

/// Takes one line off the front. A line that was cut runs into the next one.
std::string_view takeLine(std::string_view& rest) {
  size_t length = rest.find('\n');
  size_t taken = length == std::string_view::npos ? rest.size() : length + 1;
  if (taken > kLongestLine) taken = length = kLongestLine;
  const std::string_view line = rest.substr(0, length);
  rest.remove_prefix(taken);
  return line;
}

std::string upper(std::string_view word) {
  std::string result;
  for (const char c : word)
    result += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return result;
}

/// The text between the first quote and the last one of the line: a value may contain quotes.
std::string valueOf(std::string_view text) {
  if (text.empty() || text.front() != '"') return std::string(text);
  text.remove_prefix(1);
  const size_t last = text.rfind('"');
  return std::string(text.substr(0, last));
}

/// A value that was given twice keeps its first meaning.
void keepFirst(std::string& field, std::string_view value) {
  if (field.empty()) field = valueOf(value);
}

void readText(TextFields& fields, const std::string& keyword, std::string_view value) {
  if (keyword == "TITLE") keepFirst(fields.title, value);
  if (keyword == "PERFORMER") keepFirst(fields.performer, value);
  if (keyword == "SONGWRITER") keepFirst(fields.songwriter, value);
}

void readLine(SheetTexts& sheet, std::string_view line) {
  const size_t space = line.find_first_of(" \t");
  const std::string keyword = upper(line.substr(0, space));
  const std::string_view value =
      space == std::string_view::npos ? std::string_view() : trim(line.substr(space));
  if (keyword == "TRACK") {
    sheet.tracks.emplace_back();
    return;
  }
  readText(sheet.tracks.empty() ? sheet.disc : sheet.tracks.back().texts, keyword, value);
  if (keyword == "CATALOG" && sheet.tracks.empty()) keepFirst(sheet.catalog, value);
  if (keyword == "ISRC" && !sheet.tracks.empty()) keepFirst(sheet.tracks.back().isrc, value);
}

}  // namespace

SheetTexts parseSheetTexts(std::string_view sheet) {
  if (sheet.substr(0, kByteOrderMark.size()) == kByteOrderMark)
    sheet.remove_prefix(kByteOrderMark.size());
  SheetTexts texts;
  while (!sheet.empty()) readLine(texts, trim(takeLine(sheet)));
  return texts;
}

SheetTexts readSheetTexts(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw Failure("the cue sheet " + inQuotes(path) + " cannot be read for the CD-TEXT");
  const std::string sheet((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  SheetTexts texts = parseSheetTexts(sheet);
  if (texts.tracks.empty())
    throw Failure("the cue sheet " + inQuotes(path) + " has no tracks to take CD-TEXT from");
  return texts;
}

}  // namespace velmor::recording
