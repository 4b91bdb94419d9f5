// One line of a script: words and numbers, whatever stands there.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace fuzz {

class ScriptLine {
 public:
  explicit ScriptLine(std::string_view text) : m_text(text) {}

  /// The next word; empty at the end.
  std::string word() {
    skipSpaces();
    const size_t end = m_text.find(' ');
    const std::string_view found = m_text.substr(0, end);
    m_text.remove_prefix(found.size());
    return std::string(found);
  }
  bool atEnd() {
    skipSpaces();
    return m_text.empty();
  }
  /// The next word as a number, with nan and inf; 0 for none.
  double number() { return strtod(word().c_str(), nullptr); }
  /// The next word as a whole number, cut to 32 bits.
  int whole() {
    return static_cast<int>(static_cast<uint32_t>(strtoll(word().c_str(), nullptr, 10)));
  }
  /// The same, brought into a range; `absent` when the line is at its end.
  int wholeWithin(int least, int most, int absent) {
    if (atEnd()) return absent;
    const int64_t value = whole();
    if (value >= least && value <= most) return static_cast<int>(value);
    const int64_t span = int64_t{most} - least + 1;
    return static_cast<int>(least + ((value - least) % span + span) % span);
  }
  /// All that is left, without the spaces in front.
  std::string rest() {
    skipSpaces();
    return std::string(m_text);
  }

 private:
  void skipSpaces() {
    while (!m_text.empty() && m_text.front() == ' ') m_text.remove_prefix(1);
  }

  std::string_view m_text;
};

/// Takes the next line off `text`.
inline std::string_view takeLine(std::string_view& text) {
  const size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return line;
}

}  // namespace fuzz
