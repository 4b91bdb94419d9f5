#include "check/sheet/line_reader.h"

#include <algorithm>

namespace velmor::cdcheck {

std::optional<Line> LineReader::next() {
  if (rest_.empty()) return std::nullopt;
  const size_t length = std::min(rest_.find_first_of("\r\n"), rest_.size());
  const Line line{rest_.substr(0, length), ++number_};
  rest_.remove_prefix(length);
  passLineEnd();
  return line;
}

void LineReader::passLineEnd() {
  if (rest_.starts_with("\r\n")) {
    ++ends_.crlf;
    rest_.remove_prefix(2);
  } else if (rest_.starts_with('\n')) {
    ++ends_.lf;
    rest_.remove_prefix(1);
  } else if (rest_.starts_with('\r')) {
    ++ends_.cr;
    rest_.remove_prefix(1);
  }
}

}  // namespace velmor::cdcheck
