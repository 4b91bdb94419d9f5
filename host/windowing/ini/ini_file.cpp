#include "host/windowing/ini/ini_file.h"

#include <algorithm>

#include "host/windowing/win32/letter_case.h"

namespace velmor::windowing {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t";

std::string_view trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// A line's content without the mark that some editors put before the first one.
std::string_view content(std::string_view line) {
  if (line.starts_with(kByteOrderMark)) {
    line.remove_prefix(kByteOrderMark.size());
  }
  return trimmed(line);
}

bool isComment(std::string_view content) {
  return content.starts_with(';') || content.starts_with('#');
}

std::optional<std::string_view> heading(std::string_view line) {
  const std::string_view text = content(line);
  const size_t close = text.find(']');
  if (!text.starts_with('[') || close == std::string_view::npos) {
    return std::nullopt;
  }
  return trimmed(text.substr(1, close - 1));
}

struct Entry {
  std::string_view key, value;
};

std::optional<Entry> entry(std::string_view line) {
  const std::string_view text = content(line);
  const size_t equals = text.find('=');
  if (isComment(text) || equals == std::string_view::npos) {
    return std::nullopt;
  }
  return Entry{trimmed(text.substr(0, equals)), trimmed(text.substr(equals + 1))};
}

bool fitsALine(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

bool isSectionName(std::string_view name) {
  return !name.empty() && fitsALine(name) && name.find(']') == std::string_view::npos;
}

bool isKey(std::string_view name) {
  return !name.empty() && fitsALine(name) && name.find('=') == std::string_view::npos &&
         !name.starts_with('[') && !isComment(name);
}

}  // namespace

IniFile::IniFile(std::string_view text) {
  while (!text.empty()) {
    const size_t feed = text.find('\n');
    std::string_view line = text.substr(0, feed);
    std::string_view end;
    if (feed != std::string_view::npos) {
      end = line.ends_with('\r') ? "\r\n" : "\n";
      line = line.substr(0, line.size() - (end.size() - 1));
    }
    m_lines.push_back({std::string(line), end});
    text.remove_prefix(line.size() + end.size());
  }
}

std::string IniFile::text() const {
  std::string all;
  for (const Line& line : m_lines) {
    all.append(line.text).append(line.end);
  }
  return all;
}

IniFile::Range IniFile::findSection(std::string_view section) const {
  const auto opens = [&](const Line& line) {
    const auto name = heading(line.text);
    return name && sameLetters(*name, trimmed(section));
  };
  const auto found = std::ranges::find_if(m_lines, opens);
  if (found == m_lines.end()) {
    return {m_lines.size(), m_lines.size()};
  }
  const auto next = std::find_if(found + 1, m_lines.end(),
                                 [](const Line& line) { return heading(line.text).has_value(); });
  return {static_cast<size_t>(found + 1 - m_lines.begin()),
          static_cast<size_t>(next - m_lines.begin())};
}

size_t IniFile::findKey(const Range& range, std::string_view key) const {
  for (size_t at = range.first; at < range.last; ++at) {
    const auto found = entry(m_lines[at].text);
    if (found && sameLetters(found->key, trimmed(key))) {
      return at;
    }
  }
  return range.last;
}

bool IniFile::hasSection(std::string_view section) const {
  return std::ranges::any_of(
      sections(), [&](const std::string& name) { return sameLetters(name, trimmed(section)); });
}

size_t IniFile::endOfEntries(const Range& range) const {
  size_t end = range.last;
  while (end > range.first && !entry(m_lines[end - 1].text)) {
    --end;
  }
  return end;
}

std::vector<std::string> IniFile::sections() const {
  std::vector<std::string> all;
  for (const Line& line : m_lines) {
    if (const auto name = heading(line.text)) {
      all.emplace_back(*name);
    }
  }
  return all;
}

std::vector<std::string> IniFile::keys(std::string_view section) const {
  const Range range = findSection(section);
  std::vector<std::string> all;
  for (size_t at = range.first; at < range.last; ++at) {
    if (const auto found = entry(m_lines[at].text)) {
      all.emplace_back(found->key);
    }
  }
  return all;
}

std::optional<std::string> IniFile::value(std::string_view section, std::string_view key) const {
  const Range range = findSection(section);
  const size_t at = findKey(range, key);
  if (at == range.last) {
    return std::nullopt;
  }
  return std::string(entry(m_lines[at].text)->value);
}

std::string_view IniFile::lineEnd() const {
  return m_lines.empty() || m_lines.front().end.empty() ? "\n" : m_lines.front().end;
}

void IniFile::insertLine(size_t at, std::string text) {
  if (at > 0 && m_lines[at - 1].end.empty()) {
    m_lines[at - 1].end = lineEnd();
  }
  m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(at), {std::move(text), lineEnd()});
}

void IniFile::appendSection(std::string_view section) {
  if (!m_lines.empty() && !trimmed(m_lines.back().text).empty()) {
    insertLine(m_lines.size(), "");
  }
  insertLine(m_lines.size(), "[" + std::string(section) + "]");
}

bool IniFile::set(std::string_view section, std::string_view key, std::string_view value) {
  section = trimmed(section);
  key = trimmed(key);
  if (!isSectionName(section) || !isKey(key) || !fitsALine(value)) {
    return false;
  }
  Range range = findSection(section);
  if (!hasSection(section)) {
    appendSection(section);
    range = {m_lines.size(), m_lines.size()};
  }
  std::string line = std::string(key) + "=" + std::string(value);
  const size_t at = findKey(range, key);
  if (at < range.last) {
    const std::string_view old = m_lines[at].text;
    if (entry(old)->value != trimmed(value)) {
      m_lines[at].text = std::string(old.substr(0, old.find('=') + 1)) + std::string(value);
    }
    return true;
  }
  insertLine(endOfEntries(range), std::move(line));
  return true;
}

void IniFile::erase(std::string_view section, std::string_view key) {
  const Range range = findSection(section);
  const size_t at = findKey(range, key);
  if (at < range.last) {
    m_lines.erase(m_lines.begin() + static_cast<std::ptrdiff_t>(at));
  }
}

void IniFile::eraseSection(std::string_view section) {
  const Range range = findSection(section);
  const auto at = [this](size_t line) {
    return m_lines.begin() + static_cast<std::ptrdiff_t>(line);
  };
  if (hasSection(section)) {
    m_lines.erase(at(range.first - 1), at(endOfEntries(range)));
  }
}

}  // namespace velmor::windowing
