#include "host/render/album/sheet_text.h"

#include <cstddef>

#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/text/utf8.h"

namespace velmor::render {

namespace {

// The module writes lines of at most 4095 bytes. A longer one would lose its closing quote, and
// readers could not read the sheet any more.
constexpr size_t kMostBytes = 2000;
constexpr size_t kShownBytes = 40;

}  // namespace

std::string fitForSheet(const std::string& text, std::vector<std::string>& warnings) {
  const bool is_utf8 = disc::isUtf8(text);
  const std::string converted = is_utf8 ? text : disc::asLineOfText(text);
  if (!is_utf8) {
    warnings.push_back(disc::inQuotes(converted) +
                       " was not UTF-8 and is read as Windows-1252; look whether it is right");
  }
  const std::string whole(disc::beginningOf(converted, kMostBytes));
  if (whole.size() < converted.size()) {
    warnings.push_back("the text " +
                       disc::inQuotes(std::string(disc::beginningOf(text, kShownBytes)) + "…") +
                       " is cut to its first " + std::to_string(whole.size()) +
                       " bytes; the sheet holds no longer lines");
  }
  std::string fit;
  for (const char c : whole) {
    const auto byte = static_cast<unsigned char>(c);
    fit += byte < 0x20 || byte == 0x7F ? ' ' : c == '"' ? '\'' : c;
  }
  // A backslash before the closing quote makes several readers lose every track behind it.
  if (!fit.empty() && fit.back() == '\\') fit.back() = '/';
  if (fit != whole) {
    warnings.push_back(disc::inQuotes(fit) +
                       " is written instead of a text with a quote, a line break or a backslash "
                       "at its end, which would break the sheet");
  }
  return fit;
}

}  // namespace velmor::render
