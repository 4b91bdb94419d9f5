#include "host/render/album/sheet_text.h"

#include <cstddef>

namespace velmor::render {

namespace {

// The module writes lines of at most 4095 bytes. A longer one would lose its closing quote, and
// readers could not read the sheet any more.
constexpr size_t kMostBytes = 2000;
constexpr size_t kShownBytes = 40;

/// The first bytes of `text`, at most `limit`, cut between two characters of UTF-8.
std::string beginning(const std::string& text, size_t limit) {
  if (text.size() <= limit) return text;
  size_t end = limit;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
  return text.substr(0, end);
}

}  // namespace

std::string fitForSheet(const std::string& text, std::vector<std::string>& warnings) {
  const std::string whole = beginning(text, kMostBytes);
  if (whole.size() < text.size()) {
    warnings.push_back("the text \"" + beginning(text, kShownBytes) + "…\" is cut to its first " +
                       std::to_string(whole.size()) + " bytes; the sheet holds no longer lines");
  }
  std::string fit;
  for (const char c : whole) {
    const auto byte = static_cast<unsigned char>(c);
    fit += byte < 0x20 || byte == 0x7F ? ' ' : c == '"' ? '\'' : c;
  }
  // A backslash before the closing quote makes several readers lose every track behind it.
  if (!fit.empty() && fit.back() == '\\') fit.back() = '/';
  if (fit != whole) {
    warnings.push_back("\"" + fit +
                       "\" is written instead of a text with a quote, a line break or a backslash "
                       "at its end, which would break the sheet");
  }
  return fit;
}

}  // namespace velmor::render
