#include "host/render/sheet_text.h"

namespace velmor::render {

std::string fitForSheet(const std::string& text, std::vector<std::string>& warnings) {
  std::string fit;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    fit += byte < 0x20 || byte == 0x7F ? ' ' : c == '"' ? '\'' : c;
  }
  // A backslash before the closing quote makes several readers lose every track behind it.
  if (!fit.empty() && fit.back() == '\\') fit.back() = '/';
  if (fit != text) {
    warnings.push_back("\"" + fit +
                       "\" is written instead of a text with a quote, a line break or a backslash "
                       "at its end, which would break the sheet");
  }
  return fit;
}

}  // namespace velmor::render
