#include "check/sheet/sheet_parser.h"

#include <algorithm>

#include "check/sheet/command_line.h"
#include "check/sheet/line_reader.h"

namespace velmor::cdcheck {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
/// Writers that format a line into 4096 bytes cut it here, and its line end with it.
constexpr size_t kCutAt = 4095;

class Parser {
 public:
  explicit Parser(std::string_view bytes) : bytes_(bytes) {}

  Sheet run() {
    sheet_.binaryBytes = bytes_.find('\0') != std::string_view::npos;
    sheet_.byteOrderMark = bytes_.starts_with(kByteOrderMark);
    if (sheet_.byteOrderMark) bytes_.remove_prefix(kByteOrderMark.size());
    sheet_.noLastLineEnd = !bytes_.empty() && !bytes_.ends_with('\n') && !bytes_.ends_with('\r');
    LineReader lines(bytes_);
    while (const auto line = lines.next()) readLine(*line);
    if (pending_) problem(SyntaxKind::unclosed, pending_->line, "");
    sheet_.ends = lines.ends();
    return std::move(sheet_);
  }

 private:
  void readLine(const Line& line) {
    sheet_.longestLine = std::max(sheet_.longestLine, line.text.size());
    line_ = line.number;
    const std::string_view text = passCutCommands(line.text);
    if (!joinsPending(text)) readCommand(text);
  }

  /// A line of more than 4095 bytes whose 4096th begins another command was cut there. Reads the
  /// cut commands and leaves the last one.
  std::string_view passCutCommands(std::string_view text) {
    while (text.size() > kCutAt) {
      if (!beginsCommand(text.substr(kCutAt))) break;
      problem(SyntaxKind::cutLine, line_, "");
      cut_ = true;
      readCommand(text.substr(0, kCutAt));
      cut_ = false;
      text.remove_prefix(kCutAt);
    }
    return text;
  }

  /// The rest of a quoted value whose line ended before its closing quote.
  bool joinsPending(std::string_view text) {
    if (!pending_) return false;
    const Pending before = *pending_;
    pending_.reset();
    if (beginsCommand(text)) {
      problem(SyntaxKind::unclosed, before.line, "");
      return false;
    }
    problem(SyntaxKind::lineBreak, before.line, "");
    std::string_view more = trimmed(text);
    const bool closes = more.ends_with('"');
    if (closes) more.remove_suffix(1);
    if (before.value) (before.value->bytes += ' ') += more;
    if (!closes) pending_ = before;
    return true;
  }

  void readCommand(std::string_view text) {
    std::string_view rest = text;
    const std::string_view word = takeWord(rest);
    if (word.empty()) return;
    const std::string command = upperCase(word);
    if (command == "REM") {
      sheet_.remarks.push_back(wholeValue(rest, line_));
    } else if (command == "FILE") {
      readFile(rest);
    } else if (command == "TRACK") {
      readTrack(rest);
    } else if (command == "INDEX") {
      readIndex(rest);
    } else if (command == "PREGAP" || command == "POSTGAP") {
      readGap(command, rest);
    } else if (!readText(command, rest)) {
      problem(SyntaxKind::unknownCommand, line_, word.substr(0, 40));
      return;
    }
    noteSmallLetters(word, sheet_.lowerCaseCommand);
  }

  void noteSmallLetters(std::string_view word, int& firstLine) const {
    if (firstLine == 0 && upperCase(word) != word) firstLine = line_;
  }

  bool readText(std::string_view command, std::string_view rest) {
    Fields& fields = track() ? track()->fields : sheet_.fields;
    if (command == "TITLE") {
      store(fields.title, command, rest);
    } else if (command == "PERFORMER") {
      store(fields.performer, command, rest);
    } else if (command == "SONGWRITER" || command == "COMPOSER") {
      store(fields.songwriter, command, rest);
    } else if (command == "CATALOG") {
      store(sheet_.catalog, command, rest);
    } else if (command == "CDTEXTFILE") {
      store(sheet_.cdTextFile, command, rest);
    } else if (command == "ISRC" || command == "FLAGS") {
      if (!inTrack(command)) return true;
      store(command == "ISRC" ? track()->isrc : track()->flags, command, rest);
    } else {
      return false;
    }
    return true;
  }

  void store(std::optional<Text>& place, std::string_view command, std::string_view rest) {
    Text value = wholeValue(rest, line_);
    const bool goesOn = !value.closed && !cut_;
    if (place)
      problem(SyntaxKind::repeated, line_, command);
    else
      place = std::move(value);
    if (goesOn) pending_ = Pending{line_, place->line == line_ ? &*place : nullptr};
  }

  void readFile(std::string_view rest) {
    File file;
    file.name = valueBeforeWord(rest, line_, file.type);
    noteSmallLetters(file.type, sheet_.lowerCaseFileType);
    file.type = upperCase(file.type);
    if (!file.name.closed) problem(SyntaxKind::unclosed, line_, "FILE");
    sheet_.files.push_back(std::move(file));
  }

  void readTrack(std::string_view rest) {
    if (sheet_.files.empty()) problem(SyntaxKind::misplaced, line_, "TRACK before any FILE");
    Track made;
    made.number = parseNumber(takeWord(rest), 6);
    made.mode = trimmed(rest).substr(0, 40);
    noteSmallLetters(made.mode, sheet_.lowerCaseCommand);
    made.mode = upperCase(made.mode);
    made.line = line_;
    if (made.number < 0) problem(SyntaxKind::badNumber, line_, "TRACK");
    sheet_.tracks.push_back(std::move(made));
  }

  void readIndex(std::string_view rest) {
    if (!inTrack("INDEX")) return;
    Index index;
    index.number = parseNumber(takeWord(rest), 2);
    index.time = parseMsf(takeWord(rest));
    index.file = sheet_.files.empty() ? 0 : sheet_.files.size() - 1;
    index.line = line_;
    if (index.number < 0 || !index.time.readable())
      problem(SyntaxKind::badNumber, line_, "INDEX");
    else if (!rest.empty())
      problem(SyntaxKind::textAfterValue, line_, "INDEX");
    track()->indices.push_back(index);
  }

  void readGap(std::string_view command, std::string_view rest) {
    if (!inTrack(command)) return;
    const Msf time = parseMsf(takeWord(rest));
    if (!time.readable()) problem(SyntaxKind::badNumber, line_, command);
    (command == "PREGAP" ? track()->pregap : track()->postgap) = time;
  }

  Track* track() { return sheet_.tracks.empty() ? nullptr : &sheet_.tracks.back(); }

  bool inTrack(std::string_view command) {
    if (track()) return true;
    problem(SyntaxKind::misplaced, line_, std::string(command) + " before any TRACK");
    return false;
  }

  void problem(SyntaxKind kind, int line, std::string_view what) {
    if (sheet_.problems.size() >= kMostProblems) {
      ++sheet_.problemsLeftOut;
      return;
    }
    const int number = static_cast<int>(sheet_.tracks.size());
    sheet_.problems.push_back({kind, line, number, std::string(what)});
  }

  struct Pending {
    int line;
    Text*
        value;  ///< takes the rest; stays where it is, since no track is added before; may be null
  };

  std::string_view bytes_;
  Sheet sheet_;
  int line_ = 0;
  bool cut_ = false;  ///< the value being read lost its closing quote to the cut
  std::optional<Pending> pending_;
};

}  // namespace

Sheet parse(std::string_view bytes) {
  return Parser(bytes).run();
}

}  // namespace velmor::cdcheck
