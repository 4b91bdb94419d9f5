#include "check/rules/rules.h"
#include "disc/sheet/line_reader.h"
#include "disc/sheet/sheet.h"
#include "disc/text/phrases.h"
#include "disc/text/words.h"

namespace velmor::check {

namespace {

/// Words that are no commands, and that some reader knows all the same.
std::string unknownKind(const std::string& word) {
  const std::string name = disc::upperCase(word);
  if (name == "GENRE" || name == "DISC_ID" || name == "UPC_EAN") return "of CD-TEXT";
  return word.starts_with('#') ? "hash" : "any";
}

std::string repeatedKind(const disc::SyntaxProblem& p) {
  return p.what + (p.track > 0 ? " of a track" : " of the disc") +
         (p.same_value ? ", the same" : "");
}

void addProblem(const disc::SyntaxProblem& p, Findings& findings) {
  const Place& place{p.line, p.track};
  switch (p.kind) {
    case disc::SyntaxKind::kUnknownCommand:
      findings.add(Severity::kWarning, {"unknown-command", unknownKind(p.what)}, place,
                   disc::inQuotes(p.what) + " is no command of a cue sheet",
                   "Remove the line, or put REM before it.", kSheetRules);
      return;
    case disc::SyntaxKind::kMisplaced:
      findings.add(Severity::kError, "misplaced-command", place,
                   p.what + "; there is nothing it could belong to",
                   "Order the sheet as FILE, then TRACK, then the lines of the track.",
                   kSheetRules);
      return;
    case disc::SyntaxKind::kRepeated:
      if (p.what == "ISRC") {
        findings.add(Severity::kError, {"repeated-isrc", p.same_value ? "" : "another"}, place,
                     "the track has a second ISRC", "A recording has one code: keep the right one.",
                     "ISO 3901");
        return;
      }
      findings.add(Severity::kWarning, {"repeated-command", repeatedKind(p)}, place,
                   "a second " + p.what +
                       " for the same track or disc; readers differ over which "
                       "one counts",
                   "Keep one of them.");
      return;
    case disc::SyntaxKind::kBadNumber:
      findings.add(Severity::kError, "bad-number", place,
                   p.what + " has a number or a time that is none",
                   "Write tracks and indices as two digits, times as MM:SS:FF.", kSheetRules);
      return;
    case disc::SyntaxKind::kLineBreak:
      findings.add(Severity::kError, "line-break-in-value", place,
                   "the value goes on in the next line", "Put the whole value on one line.",
                   kSheetRules);
      return;
    case disc::SyntaxKind::kUnclosed:
      findings.add(Severity::kError, "quote-not-closed", place,
                   "the value begins with a quote and has none at its end", "Close the quote.",
                   kSheetRules);
      return;
    case disc::SyntaxKind::kCutLine:
      findings.add(Severity::kError, "line-cut", place,
                   "the line was cut at 4095 bytes and the next command follows on it",
                   "Shorten the text and write the sheet anew.", kSheetRules);
      return;
    case disc::SyntaxKind::kTextAfterValue:
      findings.add(Severity::kWarning,
                   {"text-after-value", p.what + (p.track > 0 ? " of a track" : "")}, place,
                   "more text stands behind the value of " + p.what, "Remove it.");
      return;
  }
}

/// Two of three readers know no line that ends in a carriage return alone: they find one line.
/// Those that take it find nothing else in it, good or bad.
void checkLineEnds(const disc::Sheet& sheet, Findings& findings) {
  const std::string count = std::to_string(sheet.ends.cr);
  if (endsInReturnsAlone(sheet)) {
    const char* const rule = "carriage-return-alone";
    findings.add(Severity::kError, rule, {}, "all lines end in a carriage return alone",
                 "Write CRLF or LF line ends.");
    findings.sayNoMoreOf(readerVerdict(rule)->damaged);
  } else if (sheet.ends.cr > 0) {
    findings.add(Severity::kWarning, "stray-carriage-return", {},
                 count +
                     " carriage returns stand without a line feed, which some readers take for "
                     "no line end",
                 "Write CRLF or LF line ends.");
  }
  if (sheet.no_last_line_end)
    findings.addForReaders("no-last-line-end", {}, "the last line has no line end",
                           "End it as the others end.");
}

/// A reader that takes the mark for a part of the first word loses the line. That is nothing where
/// it does not go by texts and remarks.
bool firstLineCounts(const disc::Sheet& sheet) {
  disc::LineReader lines(sheet.bytes);
  const auto first = lines.next();
  std::string_view rest = first ? first->text : std::string_view();
  return disc::upperCase(disc::takeWord(rest).substr(0, 40)) == "CATALOG";
}

/// By its mark, or by a letter beside a zero at its beginning.
bool isUtf16(const std::string& bytes) {
  return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF") ||
         (bytes.size() > 1 && (bytes[0] == 0) != (bytes[1] == 0));
}

bool inTrack(const disc::Sheet& sheet, int line) {
  return !sheet.tracks.empty() && line > sheet.tracks.front().line;
}

void checkCapitals(const disc::Sheet& sheet, Findings& findings) {
  for (size_t t = 0; t < sheet.tracks.size(); ++t)
    if (sheet.tracks[t].lower_case_mode)
      findings.addForReaders({"lower-case-command", "mode"},
                             {sheet.tracks[t].line, static_cast<int>(t) + 1},
                             "the mode of the TRACK stands in small letters", "Write AUDIO.");
  if (sheet.lower_case_file_type > 0)
    findings.addForReaders("lower-case-file-type", {sheet.lower_case_file_type, 0},
                           "the type of the FILE stands in small letters", "Write it in capitals.");
}

}  // namespace

void checkSyntax(const Disc& disc, Findings& findings) {
  const disc::Sheet& sheet = disc.sheet;
  if (sheet.binary_bytes)
    findings.add(Severity::kError, "not-a-text", {},
                 isUtf16(sheet.bytes) ? "the sheet is UTF-16, which readers do not know"
                                      : "the sheet holds zero bytes: it is no text",
                 "Save it as plain ASCII or UTF-8 text.");
  if (sheet.byte_order_mark)
    findings.addForReaders({"byte-order-mark", firstLineCounts(sheet) ? "" : "before a text"},
                           {1, 0}, "the sheet begins with a byte-order mark",
                           "Save it without one.");
  checkLineEnds(sheet, findings);
  checkCapitals(sheet, findings);
  if (sheet.cd_text_file)
    findings.add(Severity::kWarning,
                 {"cd-text-file", inTrack(sheet, sheet.cd_text_file->line) ? "in a track" : ""},
                 {sheet.cd_text_file->line, 0},
                 "CDTEXTFILE is named; only burning programs read it, and it is not checked here",
                 "Hand that file over too.");
  for (const disc::SyntaxProblem& p : sheet.problems) addProblem(p, findings);
  if (sheet.problems_left_out > 0)
    findings.add(Severity::kError, "more-problems", {},
                 std::to_string(sheet.problems_left_out) + " more lines could not be read",
                 "Check that this is a cue sheet at all.");
}

}  // namespace velmor::check
