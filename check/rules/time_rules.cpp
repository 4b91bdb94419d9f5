#include <set>

#include "check/rules/rules.h"
#include "disc/sheet/line_reader.h"
#include "disc/sheet/sheet.h"
#include "disc/text/words.h"

namespace velmor::check {

namespace {

/// How a time is written that is not MM:SS:FF with two digits each; empty when it is.
std::string oddDigits(std::string_view time) {
  const size_t first = time.find(':');
  const size_t second = first == std::string_view::npos ? first : time.find(':', first + 1);
  if (second == std::string_view::npos) return {};
  const size_t minutes = first, seconds = second - first - 1, frames = time.size() - second - 1;
  if (seconds > 2) return "three-digit seconds";
  if (frames > 2) return "three-digit frames";
  if (minutes > 2 && time.front() == '0') return "three-digit minutes";
  if (seconds == 1 || frames == 1) return "one-digit seconds or frames";
  return minutes == 1 ? "one-digit minutes" : "";
}

/// Each way of writing is told once, of the first line that shows it.
class DigitCheck {
 public:
  explicit DigitCheck(Findings& findings) : m_findings(findings) {}

  void check(const disc::Line& line) {
    std::string_view rest = line.text;
    const std::string command = disc::upperCase(disc::takeWord(rest).substr(0, 40));
    if (command != "INDEX" && command != "PREGAP" && command != "POSTGAP") return;
    if (command == "INDEX") {
      const std::string_view number = disc::takeWord(rest);
      if (number == "0" || number == "1")
        tell({"index-digits", std::string(number)}, line.number,
             "INDEX " + std::string(number) + " has one digit", "Write two digits.");
    }
    const std::string odd = oddDigits(disc::takeWord(rest));
    if (!odd.empty())
      tell({"time-digits", odd}, line.number, "the time has " + odd,
           "Write two digits each: MM:SS:FF.");
  }

 private:
  void tell(const RuleCase& rule, int line, const std::string& what, const std::string& action) {
    if (m_told.insert(rule.key()).second) m_findings.addForReaders(rule, {line, 0}, what, action);
  }

  Findings& m_findings;
  std::set<std::string> m_told;
};

/// PREGAP and POSTGAP add silence that no file holds.
void checkSilence(const disc::Track& t, int number, bool last, Findings& findings) {
  const Place& place{t.line, number};
  const std::string advice = "Put the pause into the image, with INDEX 00 where it begins.";
  if (t.pregap && t.pregap->readable()) {
    const std::string which = t.pregap->sectors() == 0 ? "nothing"
                              : t.index(0)             ? "with INDEX 00"
                              : t.pregap_behind_index  ? "late"
                              : number == 1            ? "track 1"
                                                       : "usual";
    findings.addForReaders({"pregap", which}, place,
                           "PREGAP adds silence that is in no file" +
                               std::string(t.index(0) ? ", beside an INDEX 00 that is" : ""),
                           advice);
  }
  if (t.postgap && t.postgap->readable())
    findings.addForReaders({"postgap", last ? "last" : "usual"}, place,
                           "POSTGAP adds silence that is in no file", advice);
}

/// cdrdao counts an index from 02 on from the start of the track instead of that of the file.
void checkMoreIndices(const Disc& disc, size_t t, Findings& findings) {
  const auto& place = disc.places[t];
  if (!place || place->start == 0) return;
  for (const disc::Index& i : disc.sheet.tracks[t].indices) {
    if (i.number < 2 || !i.time.readable() || i.file != place->file) continue;
    const bool beyond = place->end_known && i.time.sectors() >= place->end - place->start;
    findings.addForReaders({"index-02", beyond ? "beyond the end" : ""},
                           {i.line, static_cast<int>(t) + 1},
                           "the track has an INDEX " + std::to_string(i.number),
                           "Leave out indices above 01 (--portable does).");
    return;
  }
}

}  // namespace

void checkTimes(const Disc& disc, Findings& findings) {
  DigitCheck digits(findings);
  disc::LineReader lines(disc.sheet.bytes);
  if (!endsInReturnsAlone(disc.sheet))
    while (const auto line = lines.next()) digits.check(*line);
  const auto& tracks = disc.sheet.tracks;
  for (size_t t = 0; t < tracks.size(); ++t) {
    checkSilence(tracks[t], static_cast<int>(t) + 1, t + 1 == tracks.size(), findings);
    checkMoreIndices(disc, t, findings);
  }
}

}  // namespace velmor::check
