#include "host/windowing/ini/ini_file.h"

#include <algorithm>

#include "host/windowing/ini/letter_case.h"

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

bool is_comment(std::string_view content) {
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
  if (is_comment(text) || equals == std::string_view::npos) {
    return std::nullopt;
  }
  return Entry{trimmed(text.substr(0, equals)), trimmed(text.substr(equals + 1))};
}

bool fits_a_line(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

bool is_section_name(std::string_view name) {
  return !name.empty() && fits_a_line(name) && name.find(']') == std::string_view::npos;
}

bool is_key(std::string_view name) {
  return !name.empty() && fits_a_line(name) && name.find('=') == std::string_view::npos &&
         !name.starts_with('[') && !is_comment(name);
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
    lines_.push_back({std::string(line), end});
    text.remove_prefix(line.size() + end.size());
  }
}

std::string IniFile::text() const {
  std::string all;
  for (const Line& line : lines_) {
    all.append(line.text).append(line.end);
  }
  return all;
}

IniFile::Range IniFile::find_section(std::string_view section) const {
  const auto opens = [&](const Line& line) {
    const auto name = heading(line.text);
    return name && same_letters(*name, trimmed(section));
  };
  const auto found = std::ranges::find_if(lines_, opens);
  if (found == lines_.end()) {
    return {lines_.size(), lines_.size()};
  }
  const auto next = std::find_if(found + 1, lines_.end(),
                                 [](const Line& line) { return heading(line.text).has_value(); });
  return {static_cast<size_t>(found + 1 - lines_.begin()),
          static_cast<size_t>(next - lines_.begin())};
}

size_t IniFile::find_key(const Range& range, std::string_view key) const {
  for (size_t at = range.first; at < range.last; ++at) {
    const auto found = entry(lines_[at].text);
    if (found && same_letters(found->key, trimmed(key))) {
      return at;
    }
  }
  return range.last;
}

bool IniFile::has_section(std::string_view section) const {
  return std::ranges::any_of(
      sections(), [&](const std::string& name) { return same_letters(name, trimmed(section)); });
}

size_t IniFile::end_of_entries(const Range& range) const {
  size_t end = range.last;
  while (end > range.first && !entry(lines_[end - 1].text)) {
    --end;
  }
  return end;
}

std::vector<std::string> IniFile::sections() const {
  std::vector<std::string> all;
  for (const Line& line : lines_) {
    if (const auto name = heading(line.text)) {
      all.emplace_back(*name);
    }
  }
  return all;
}

std::vector<std::string> IniFile::keys(std::string_view section) const {
  const Range range = find_section(section);
  std::vector<std::string> all;
  for (size_t at = range.first; at < range.last; ++at) {
    if (const auto found = entry(lines_[at].text)) {
      all.emplace_back(found->key);
    }
  }
  return all;
}

std::optional<std::string> IniFile::value(std::string_view section, std::string_view key) const {
  const Range range = find_section(section);
  const size_t at = find_key(range, key);
  if (at == range.last) {
    return std::nullopt;
  }
  return std::string(entry(lines_[at].text)->value);
}

std::string_view IniFile::line_end() const {
  return lines_.empty() || lines_.front().end.empty() ? "\n" : lines_.front().end;
}

void IniFile::insert_line(size_t at, std::string text) {
  if (at > 0 && lines_[at - 1].end.empty()) {
    lines_[at - 1].end = line_end();
  }
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at), {std::move(text), line_end()});
}

void IniFile::append_section(std::string_view section) {
  if (!lines_.empty() && !trimmed(lines_.back().text).empty()) {
    insert_line(lines_.size(), "");
  }
  insert_line(lines_.size(), "[" + std::string(section) + "]");
}

bool IniFile::set(std::string_view section, std::string_view key, std::string_view value) {
  section = trimmed(section);
  key = trimmed(key);
  if (!is_section_name(section) || !is_key(key) || !fits_a_line(value)) {
    return false;
  }
  Range range = find_section(section);
  if (!has_section(section)) {
    append_section(section);
    range = {lines_.size(), lines_.size()};
  }
  std::string line = std::string(key) + "=" + std::string(value);
  const size_t at = find_key(range, key);
  if (at < range.last) {
    const std::string_view old = lines_[at].text;
    if (entry(old)->value != trimmed(value)) {
      lines_[at].text = std::string(old.substr(0, old.find('=') + 1)) + std::string(value);
    }
    return true;
  }
  insert_line(end_of_entries(range), std::move(line));
  return true;
}

void IniFile::erase(std::string_view section, std::string_view key) {
  const Range range = find_section(section);
  const size_t at = find_key(range, key);
  if (at < range.last) {
    lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(at));
  }
}

void IniFile::erase_section(std::string_view section) {
  const Range range = find_section(section);
  const auto at = [this](size_t line) {
    return lines_.begin() + static_cast<std::ptrdiff_t>(line);
  };
  if (has_section(section)) {
    lines_.erase(at(range.first - 1), at(end_of_entries(range)));
  }
}

}  // namespace velmor::windowing
