// The text of an ini file: sections of `key=value` lines, with everything that people wrote around
// them kept.
//
// Names of sections and keys match without regard to letter case; blanks around names and values do
// not count. Where a section or a key occurs twice, the first one counts. Lines that begin with
// ';' or '#' are comments.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmor::windowing {

class IniFile {
 public:
  explicit IniFile(std::string_view text = {});

  /// The ini file at `path`, an empty one when it does not exist. Nothing when it exists and cannot
  /// be read, so that the caller does not replace it.
  static std::optional<IniFile> load(const std::string& path);
  /// Puts the text in the file's place in one step: whoever opens the file finds the old text or
  /// the new one, also after a crash. The file's permissions stay, and so does a symbolic
  /// link that leads to it. When two programs change the file at once, the text of the later one
  /// stays. False when nothing could be written. Defined, like `load`, in ini_storage.cpp.
  bool store(const std::string& path) const;

  std::vector<std::string> sections() const;
  std::vector<std::string> keys(std::string_view section) const;
  std::optional<std::string> value(std::string_view section, std::string_view key) const;

  /// False, and nothing changed, for texts that a line of the file cannot hold.
  bool set(std::string_view section, std::string_view key, std::string_view value);
  void erase(std::string_view section, std::string_view key);
  void eraseSection(std::string_view section);

  std::string text() const;

 private:
  struct Line {
    std::string text;      ///< without its end
    std::string_view end;  ///< "\n", "\r\n" or, for a last line, nothing
  };

  /// The lines of a section, its heading not included; empty at the end when there is none.
  struct Range {
    size_t first, last;
  };

  Range findSection(std::string_view section) const;
  bool hasSection(std::string_view section) const;
  /// The place behind the section's last entry, before any comments that follow it: those may well
  /// introduce the next section.
  size_t endOfEntries(const Range& range) const;
  size_t findKey(const Range& range, std::string_view key) const;
  std::string_view lineEnd() const;
  void insertLine(size_t at, std::string text);
  void appendSection(std::string_view section);

  std::vector<Line> m_lines;
};

}  // namespace velmor::windowing
