#include "disc/sheet/line_reader.h"

#include <algorithm>

namespace velmor::disc {

std::optional<Line> LineReader::next() {
  if (m_rest.empty()) return std::nullopt;
  const auto end =
      std::find_if(m_rest.begin(), m_rest.end(), [](char c) { return c == '\r' || c == '\n'; });
  const auto length = static_cast<size_t>(end - m_rest.begin());
  const Line line{m_rest.substr(0, length), ++m_number};
  m_rest.remove_prefix(length);
  passLineEnd();
  return line;
}

void LineReader::passLineEnd() {
  if (m_rest.starts_with("\r\n")) {
    ++m_ends.crlf;
    m_rest.remove_prefix(2);
  } else if (m_rest.starts_with('\n')) {
    ++m_ends.lf;
    m_rest.remove_prefix(1);
  } else if (m_rest.starts_with('\r')) {
    ++m_ends.cr;
    m_rest.remove_prefix(1);
  }
}

}  // namespace velmor::disc
