#include <algorithm>
#include <cctype>
#include <optional>
#include <set>
#include <utility>

#include "check/rules/rules.h"
#include "disc/sheet/line_reader.h"
#include "disc/sheet/sheet.h"
#include "disc/sheet/sheet_line.h"
#include "disc/text/phrases.h"
#include "disc/text/words.h"

namespace velmor::check {

namespace {

/// One line of the sheet, as readers that go by its letters see it.
struct FormLine {
  int number = 0;
  std::string_view text;  ///< whole
  std::string_view word;  ///< the command as written
  std::string_view rest;  ///< what follows the command, with the blanks around it
  std::string command;    ///< in capitals
  bool known = false;     ///< a command of a cue sheet

  bool is(std::string_view name) const { return command == name; }
};

FormLine formLine(const disc::Line& line) {
  FormLine form;
  form.number = line.number;
  form.text = line.text;
  std::string_view rest = line.text;
  form.word = disc::takeWord(rest);
  if (!form.word.empty())
    form.rest = line.text.substr(
        static_cast<size_t>(form.word.data() + form.word.size() - line.text.data()));
  form.command = disc::upperCase(form.word.substr(0, 40));
  form.known = disc::beginsCommand(line.text);
  return form;
}

std::optional<FormLine> nextLine(disc::LineReader& lines) {
  const std::optional<disc::Line> line = lines.next();
  if (!line) return std::nullopt;
  return formLine(*line);
}

bool isText(const FormLine& l) {
  return l.is("TITLE") || l.is("PERFORMER") || l.is("SONGWRITER");
}

/// What stands between command and values, and between them, outside of quotes: is `blank` there?
bool separatedBy(std::string_view rest, std::string_view blank) {
  const size_t end = rest.find_last_not_of(" \t");
  if (end == std::string_view::npos) return false;
  rest = rest.substr(0, std::min(rest.find('"'), end + 1));
  return rest.find(blank) != std::string_view::npos;
}

/// Each habit is told once, of the first line that shows it: a sheet that one program wrote has it
/// in every line.
class FormCheck {
 public:
  FormCheck(const disc::Sheet& sheet, Findings& findings) : m_sheet(sheet), m_findings(findings) {}

  void run() {
    disc::LineReader lines(m_sheet.bytes);
    const FormLine none;
    std::optional<FormLine> form = nextLine(lines);
    while (form) {
      std::optional<FormLine> next = nextLine(lines);
      checkLine(*form, next ? *next : none);
      passOn(*form);
      form = std::move(next);
    }
    if (m_tracks > 0 && m_capital_tracks == 0)
      tell({"lower-case-command", "all"}, m_first_track, "no TRACK stands in capitals",
           "Write commands in capitals.");
  }

 private:
  void tell(const RuleCase& rule, int line, const std::string& what, const std::string& action) {
    if (m_told.insert(rule.key()).second)
      m_findings.addForReaders(rule, {line, m_tracks}, what, action);
  }

  void passOn(const FormLine& l) {
    if (l.is("TRACK")) {
      ++m_tracks;
      if (m_first_track == 0) m_first_track = l.number;
      if (l.word == l.command) ++m_capital_tracks;
      m_index_seen = false;
    }
    if (l.is("INDEX")) m_index_seen = true;
  }

  void checkLine(const FormLine& l, const FormLine& next) {
    if (l.number == 1) checkFirst(l);
    if (l.word.empty()) {
      if (!l.text.empty())
        tell("blank-line", l.number, "a line holds blanks and nothing else",
             "Empty the line, or take it out.");
      return;
    }
    if (!l.known) return;
    checkCapitals(l);
    checkBlanks(l);
    checkPlace(l);
    if (isText(l)) checkQuotes(l);
    if (isText(l) && disc::trimmed(l.rest).empty() && losesMuch(next))
      tell("text-without-value", l.number, l.command + " has no value",
           "Give it one, or take the line out.");
    if (l.is("FILE")) checkFile(l);
    if (l.is("COMPOSER") || l.is("ARRANGER") || l.is("MESSAGE"))
      tell({"new-command", l.command}, l.number, l.command + " is a command of newer sheets",
           "Leave it out where these readers matter (--portable does).");
    if (l.is("REM")) checkRemark(l, next);
    if (l.is("TITLE") || l.is("PERFORMER") || l.is("FILE")) checkWordsWithin(l);
  }

  void checkFirst(const FormLine& l) {
    if (!l.known || l.word != l.command)
      tell("first-line", l.number, "the first line is no command of a cue sheet in capitals",
           "Begin with REM or a command.");
  }

  /// INDEX 00 and 01 are told apart, since readers do.
  std::string kindOf(const FormLine& l) const {
    if (l.command != "INDEX") return l.command;
    std::string_view rest = l.rest;
    const int number = disc::parseNumber(disc::takeWord(rest), 2);
    return number == 1 ? "INDEX 01" : "INDEX 00";
  }

  void checkCapitals(const FormLine& l) {
    if (l.word != l.command)
      tell({"lower-case-command", kindOf(l)}, l.number, "a command stands in small letters",
           "Write commands in capitals.");
  }

  void checkBlanks(const FormLine& l) {
    const char last = l.text.back();
    const bool in_track = m_tracks > 0 || l.command != "TITLE";
    if ((last == ' ' || last == '\t') && in_track)
      tell({"blank-at-end", l.command}, l.number, l.command + " has blanks at the line's end",
           "Take them out.");
    if (separatedBy(l.rest, "\t"))
      tell({"tab-between", kindOf(l)}, l.number, l.command + " is followed by a tab",
           "Write one blank between command and values.");
    if (separatedBy(l.rest, "  "))
      tell({"blanks-between", kindOf(l)}, l.number, l.command + " has blanks one after the other",
           "Write one blank between command and values.");
  }

  void checkPlace(const FormLine& l) {
    if (l.is("CATALOG") && m_tracks > 0)
      tell({"command-out-of-place", l.command}, l.number, "CATALOG stands behind a TRACK",
           "Put it before FILE: it is the disc's.");
    if ((l.is("FLAGS") || l.is("ISRC")) && m_index_seen)
      tell({"command-out-of-place", l.command}, l.number, l.command + " stands behind an INDEX",
           "Put it between TRACK and the first INDEX.");
  }

  std::string ofTrack(const std::string& command) const {
    return command + (m_tracks > 0 ? " of a track" : " of the disc");
  }

  void checkQuotes(const FormLine& l) {
    const std::string_view value = disc::trimmed(l.rest);
    if (value.empty() || value.front() == '"') return;
    const std::string what = l.command + " stands without quotes";
    if (value.front() == '\'' && value.size() > 1 && value.back() == '\'')
      tell({"text-unquoted", "apostrophes, " + ofTrack(l.command)}, l.number,
           l.command + " stands in apostrophes", "Put it in double quotes.");
    else if (value.find('"') != std::string_view::npos)
      tell({"text-unquoted", "half, " + ofTrack(l.command)}, l.number, what,
           "Put it in double quotes.");
    else if (value.find_first_of(" \t") != std::string_view::npos)
      tell({"text-unquoted", ofTrack(l.command)}, l.number, what, "Put it in double quotes.");
  }

  void checkFile(const FormLine& l) {
    const std::string_view value = disc::trimmed(l.rest);
    if (value.empty() || value.front() == '"') return;
    std::string type;
    const bool blanks = disc::valueBeforeWord(value, l.number, type).bytes.find_first_of(" \t") !=
                        std::string::npos;
    tell({"file-unquoted", blanks ? "with blanks" : ""}, l.number, "the name in FILE has no quotes",
         "Put it in double quotes.");
  }

  /// bchunk finds its commands anywhere in a line.
  void checkWordsWithin(const FormLine& l) {
    for (const std::string_view word : {"TRACK", "INDEX"}) {
      if (l.rest.find(word) == std::string_view::npos) continue;
      const bool before = m_tracks == 0;
      tell({"command-within", before ? "before the first track" : ""}, l.number,
           "the value holds the word " + std::string(word), "Spell the word otherwise.");
      return;
    }
  }

  /// Would it matter that this line is passed over?
  static bool losesMuch(const FormLine& l) {
    return isText(l) || l.is("INDEX") || l.is("ISRC") || l.is("TRACK");
  }

  void checkRemark(const FormLine& l, const FormLine& next) {
    std::string_view rest = l.rest;
    const std::string kind(disc::takeWord(rest));
    checkWordsWithin(l);
    const bool names_more = kind == "DATE" || kind == "GENRE" || kind.starts_with("REPLAYGAIN_");
    if (names_more && rest.empty() && losesMuch(next))
      tell("remark-without-value", l.number, "REM " + kind + " has no value",
           "Give it one, or take the line out.");
  }

  const disc::Sheet& m_sheet;
  Findings& m_findings;
  std::set<std::string> m_told;
  int m_tracks = 0, m_capital_tracks = 0, m_first_track = 0;
  bool m_index_seen = false;
};

}  // namespace

void checkForm(const Disc& disc, Findings& findings) {
  // A sheet of one line to most readers has no lines that could be told apart.
  if (!disc.sheet.binary_bytes && !endsInReturnsAlone(disc.sheet))
    FormCheck(disc.sheet, findings).run();
}

}  // namespace velmor::check
