#include "check/rules/rules.h"
#include "disc/sheet/sheet.h"
#include "disc/sheet/track_words.h"
#include "disc/text/phrases.h"
#include "disc/text/words.h"

namespace velmor::check {

namespace {

void checkMode(const disc::Track& t, int number, Findings& findings) {
  if (!disc::isTrackMode(t.mode))
    findings.add(Severity::kError, "unknown-track-mode", {t.line, number},
                 "TRACK has the mode " + disc::inQuotes(t.mode) + ", which is none", "Write AUDIO.",
                 kSheetRules);
  else if (!t.isAudio())
    findings.add(Severity::kWarning, "not-audio", {t.line, number},
                 "the track is " + t.mode + ", not AUDIO",
                 "Sector rules of audio are applied to it all the same.", "Red Book (IEC 60908)");
}

void checkFlags(const disc::Text& flags, int number, Findings& findings) {
  std::string_view rest = flags.bytes;
  while (!rest.empty()) {
    const std::string_view word = disc::takeWord(rest);
    if (flags.quoted || !disc::isFlag(word)) {
      findings.add(Severity::kError, "unknown-flag", {flags.line, number},
                   "FLAGS has " + disc::inQuotes(word.substr(0, 40)) + ", which is none",
                   "It has one or more of DCP, 4CH, PRE, SCMS, without quotes.", kSheetRules);
      return;
    }
  }
}

}  // namespace

void checkTracks(const Disc& disc, Findings& findings) {
  int number = 0;
  for (const disc::Track& t : disc.sheet.tracks) {
    ++number;
    checkMode(t, number, findings);
    if (t.flags) checkFlags(*t.flags, number, findings);
  }
}

}  // namespace velmor::check
