#include "disc/sheet/sheet_parser.h"

#include <algorithm>

#include "disc/sheet/line_reader.h"
#include "disc/sheet/sheet_line.h"
#include "disc/text/words.h"

namespace velmor::disc {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
/// Writers that format a line into 4096 bytes cut it here, and its line end with it.
constexpr size_t kCutAt = 4095;

class Parser {
 public:
  explicit Parser(std::string_view bytes) : m_bytes(bytes) {}

  Sheet run() {
    m_sheet.binary_bytes = m_bytes.find('\0') != std::string_view::npos;
    m_sheet.byte_order_mark = m_bytes.starts_with(kByteOrderMark);
    if (m_sheet.byte_order_mark) m_bytes.remove_prefix(kByteOrderMark.size());
    m_sheet.no_last_line_end =
        !m_bytes.empty() && !m_bytes.ends_with('\n') && !m_bytes.ends_with('\r');
    LineReader lines(m_bytes);
    while (const auto line = lines.next()) readLine(*line);
    if (m_pending) problem(SyntaxKind::kUnclosed, m_pending->line, "");
    m_sheet.ends = lines.ends();
    m_sheet.bytes = m_bytes;
    return std::move(m_sheet);
  }

 private:
  void readLine(const Line& line) {
    m_sheet.longest_line = std::max(m_sheet.longest_line, line.text.size());
    m_line = line.number;
    const std::string_view text = passCutCommands(line.text);
    if (!joinsPending(text)) readCommand(text);
  }

  /// A line of more than 4095 bytes whose 4096th begins another command was cut there. Reads the
  /// cut commands and leaves the last one.
  std::string_view passCutCommands(std::string_view text) {
    while (text.size() > kCutAt) {
      if (!beginsCommand(text.substr(kCutAt))) break;
      problem(SyntaxKind::kCutLine, m_line, "");
      m_cut = true;
      readCommand(text.substr(0, kCutAt));
      m_cut = false;
      text.remove_prefix(kCutAt);
    }
    return text;
  }

  /// The rest of a quoted value whose line ended before its closing quote.
  bool joinsPending(std::string_view text) {
    if (!m_pending) return false;
    const Pending before = *m_pending;
    m_pending.reset();
    if (beginsCommand(text)) {
      problem(SyntaxKind::kUnclosed, before.line, "");
      return false;
    }
    problem(SyntaxKind::kLineBreak, before.line, "");
    std::string_view more = trimmed(text);
    const bool closes = more.ends_with('"');
    if (closes) more.remove_suffix(1);
    if (before.value) (before.value->bytes += ' ') += more;
    if (!closes) m_pending = before;
    return true;
  }

  void readCommand(std::string_view text) {
    std::string_view rest = text;
    const std::string_view word = takeWord(rest);
    if (word.empty()) return;
    const std::string in_capitals = upperCase(word);
    const std::string_view command = in_capitals;
    if (command == "REM") {
      m_sheet.remarks.push_back(wholeValue(rest, m_line));
    } else if (command == "FILE") {
      readFile(rest);
    } else if (command == "TRACK") {
      readTrack(rest);
    } else if (command == "INDEX") {
      readIndex(rest);
    } else if (command == "PREGAP" || command == "POSTGAP") {
      readGap(command, rest);
    } else if (!readText(command, rest)) {
      problem(SyntaxKind::kUnknownCommand, m_line, word.substr(0, 40));
    }
  }

  bool readText(std::string_view command, std::string_view rest) {
    Fields& fields = track() ? track()->fields : m_sheet.fields;
    if (command == "TITLE") {
      store(fields.title, command, rest);
    } else if (command == "PERFORMER") {
      store(fields.performer, command, rest);
    } else if (command == "SONGWRITER") {
      store(fields.songwriter, command, rest);
    } else if (command == "COMPOSER") {
      store(fields.composer, command, rest);
    } else if (command == "ARRANGER") {
      store(fields.arranger, command, rest);
    } else if (command == "MESSAGE") {
      store(fields.message, command, rest);
    } else if (command == "CATALOG") {
      store(m_sheet.catalog, command, rest);
    } else if (command == "CDTEXTFILE") {
      store(m_sheet.cd_text_file, command, rest);
    } else if (command == "ISRC" || command == "FLAGS") {
      if (!inTrack(command)) return true;
      store(command == "ISRC" ? track()->isrc : track()->flags, command, rest);
    } else {
      return false;
    }
    return true;
  }

  void store(std::optional<Text>& place, std::string_view command, std::string_view rest) {
    Text value = wholeValue(rest, m_line);
    if (value.text_after) problem(SyntaxKind::kTextAfterValue, m_line, command);
    const bool goes_on = !value.closed && !m_cut;
    if (place)
      problem(SyntaxKind::kRepeated, m_line, command, place->bytes == value.bytes);
    else
      place = std::move(value);
    if (goes_on) m_pending = Pending{m_line, place->line == m_line ? &*place : nullptr};
  }

  void readFile(std::string_view rest) {
    File file;
    std::string after;
    file.name = valueBeforeWord(rest, m_line, after);
    std::string_view words = after;
    const std::string_view type = takeWord(words);
    if (!trimmed(words).empty()) problem(SyntaxKind::kTextAfterValue, m_line, "FILE");
    file.type = upperCase(type);
    if (m_sheet.lower_case_file_type == 0 && file.type != type)
      m_sheet.lower_case_file_type = m_line;
    if (!file.name.closed) problem(SyntaxKind::kUnclosed, m_line, "FILE");
    m_sheet.files.push_back(std::move(file));
  }

  void readTrack(std::string_view rest) {
    if (m_sheet.files.empty()) problem(SyntaxKind::kMisplaced, m_line, "TRACK before any FILE");
    const int number = parseNumber(takeWord(rest), 6);
    const std::string_view mode = takeWord(rest).substr(0, 40);
    if (!trimmed(rest).empty()) problem(SyntaxKind::kTextAfterValue, m_line, "TRACK");
    if (number < 0) problem(SyntaxKind::kBadNumber, m_line, "TRACK");
    Track& made = addTrack();
    made.number = number;
    made.mode = upperCase(mode);
    made.lower_case_mode = made.mode != mode;
    made.line = m_line;
  }

  Track& addTrack() {
    ++m_sheet.tracks_in_all;
    if (m_sheet.tracks.size() < kMostTracksKept) return m_sheet.tracks.emplace_back();
    return m_beyond.emplace();
  }

  void readIndex(std::string_view rest) {
    if (!inTrack("INDEX")) return;
    Index index;
    index.number = parseNumber(takeWord(rest), 2);
    index.time = parseMsf(takeWord(rest));
    index.file = m_sheet.files.empty() ? 0 : m_sheet.files.size() - 1;
    index.line = m_line;
    if (index.number < 0 || !index.time.readable())
      problem(SyntaxKind::kBadNumber, m_line, "INDEX");
    else if (!rest.empty())
      problem(SyntaxKind::kTextAfterValue, m_line, "INDEX");
    track()->indices.push_back(index);
  }

  void readGap(std::string_view command, std::string_view rest) {
    if (!inTrack(command)) return;
    const Msf time = parseMsf(takeWord(rest));
    if (!time.readable()) problem(SyntaxKind::kBadNumber, m_line, command);
    std::optional<Msf>& place = command == "PREGAP" ? track()->pregap : track()->postgap;
    if (place) {
      problem(SyntaxKind::kRepeated, m_line, command);
      return;
    }
    place = time;
    if (command == "PREGAP") track()->pregap_behind_index = !track()->indices.empty();
  }

  Track* track() {
    if (m_beyond) return &*m_beyond;
    return m_sheet.tracks.empty() ? nullptr : &m_sheet.tracks.back();
  }

  bool inTrack(std::string_view command) {
    if (track()) return true;
    problem(SyntaxKind::kMisplaced, m_line, std::string(command) + " before any TRACK");
    return false;
  }

  void problem(SyntaxKind kind, int line, std::string_view what, bool same_value = false) {
    if (m_sheet.problems.size() >= kMostProblems) {
      ++m_sheet.problems_left_out;
      return;
    }
    const int number = static_cast<int>(m_sheet.tracks_in_all);
    m_sheet.problems.push_back({kind, line, number, std::string(what), same_value});
  }

  /// A quoted value whose closing quote may come in a later line.
  struct Pending {
    int line;
    /// Where the rest of the value goes; null when it is dropped, being a second value. No track is
    /// added while a value is pending, so the pointer stays valid.
    Text* value;
  };

  std::string_view m_bytes;
  Sheet m_sheet;
  int m_line = 0;
  bool m_cut = false;  ///< the value being read lost its closing quote to the cut
  std::optional<Pending> m_pending;
  std::optional<Track> m_beyond;  ///< the track being read, when it is one too many to keep
};

}  // namespace

Sheet parseSheet(std::string_view bytes) {
  return Parser(bytes).run();
}

}  // namespace velmor::disc
