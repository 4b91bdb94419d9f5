// Splits the bytes of a text into lines that end in CR, LF or CRLF, and counts which.
#pragma once

#include <optional>
#include <string_view>

#include "disc/sheet/sheet.h"

namespace velmor::disc {

struct Line {
  std::string_view text;  ///< without its end
  int number = 0;         ///< 1 and up
};

class LineReader {
 public:
  explicit LineReader(std::string_view bytes) : m_rest(bytes) {}

  /// The next line, or nothing after the last. A text that ends in a line end has no empty last
  /// line.
  std::optional<Line> next();
  const LineEnds& ends() const { return m_ends; }

 private:
  void passLineEnd();

  std::string_view m_rest;
  LineEnds m_ends;
  int m_number = 0;
};

}  // namespace velmor::disc
