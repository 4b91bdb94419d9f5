#include "check/rules/rules.h"
#include "disc/sheet/sheet.h"
#include "disc/sheet/track_words.h"
#include "disc/text/phrases.h"
#include "disc/text/words.h"

namespace velmor::check {

namespace {

/// Some readers lose a track of a mode that they do not know, or the disc when it is the last; and
/// one loses the code of a data track, where it has one.
std::string modeKind(const disc::Track& t, bool last) {
  if (t.mode.starts_with("CD")) return t.mode + (last ? ", last" : "");
  return t.mode + (t.isrc ? "" : ", without ISRC");
}

/// Modes of other discs than those of the rules, which some readers know.
std::string unknownModeKind(const std::string& mode, bool last) {
  if (mode.empty()) return "missing";
  if (mode == "MODE2/2048" || mode == "MODE2/2324") return mode + (last ? ", last" : "");
  return {};
}

void checkMode(const disc::Track& t, int number, bool last, Findings& findings) {
  if (!disc::isTrackMode(t.mode))
    findings.add(
        Severity::kError, {"unknown-track-mode", unknownModeKind(t.mode, last)}, {t.line, number},
        t.mode.empty() ? "TRACK has no mode"
                       : "TRACK has the mode " + disc::inQuotes(t.mode) + ", which is none",
        "Write AUDIO.", kSheetRules);
  else if (!t.isAudio())
    findings.add(Severity::kWarning, {"not-audio", modeKind(t, last)}, {t.line, number},
                 "the track is " + t.mode + ", not AUDIO",
                 "Sector rules of audio are applied to it all the same.", "Red Book (IEC 60908)");
}

void checkFlags(const disc::Text& flags, int number, Findings& findings) {
  std::string_view rest = flags.bytes;
  if (flags.quoted) {
    findings.add(Severity::kError, {"unknown-flag", rest.empty() ? "" : "quoted"},
                 {flags.line, number}, "FLAGS stands in quotes", "Write the flags without quotes.",
                 kSheetRules);
    return;
  }
  while (!rest.empty()) {
    const std::string_view word = disc::takeWord(rest);
    if (!disc::isFlag(word)) {
      const bool small = disc::isFlag(disc::upperCase(word));
      findings.add(Severity::kError, {"unknown-flag", small ? "small letters" : ""},
                   {flags.line, number},
                   "FLAGS has " + disc::inQuotes(word.substr(0, 40)) + ", which is none",
                   "It has one or more of DCP, 4CH, PRE, SCMS.", kSheetRules);
      return;
    }
  }
}

}  // namespace

void checkTracks(const Disc& disc, Findings& findings) {
  int number = 0;
  for (const disc::Track& t : disc.sheet.tracks) {
    ++number;
    checkMode(t, number, &t == &disc.sheet.tracks.back(), findings);
    if (t.flags) checkFlags(*t.flags, number, findings);
  }
}

}  // namespace velmor::check
