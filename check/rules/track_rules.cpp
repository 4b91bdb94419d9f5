#include <algorithm>
#include <array>

#include "check/rules/rules.h"
#include "check/rules/track_words.h"
#include "check/sheet/command_line.h"

namespace velmor::check {

namespace {

constexpr std::array<std::string_view, 8> kModes = {
    "AUDIO", "CDG", "MODE1/2048", "MODE1/2352", "MODE2/2336", "MODE2/2352", "CDI/2336", "CDI/2352"};
constexpr std::array<std::string_view, 4> kFlags = {"DCP", "4CH", "PRE", "SCMS"};

void checkMode(const Track& t, int number, Findings& findings) {
  if (!isTrackMode(t.mode))
    findings.add(Severity::kError, "unknown-track-mode", {t.line, number},
                 "TRACK has the mode '" + t.mode + "', which is none", "Write AUDIO.", kSheetRules);
  else if (!t.isAudio())
    findings.add(Severity::kWarning, "not-audio", {t.line, number},
                 "the track is " + t.mode + ", not AUDIO",
                 "Sector rules of audio are applied to it all the same.", "Red Book (IEC 60908)");
}

void checkFlags(const Text& flags, int number, Findings& findings) {
  std::string_view rest = flags.bytes;
  while (!rest.empty()) {
    const std::string_view word = takeWord(rest);
    if (flags.quoted || !isFlag(word)) {
      findings.add(Severity::kError, "unknown-flag", {flags.line, number},
                   "FLAGS has '" + std::string(word.substr(0, 40)) + "', which is none",
                   "It has one or more of DCP, 4CH, PRE, SCMS, without quotes.", kSheetRules);
      return;
    }
  }
}

}  // namespace

bool isTrackMode(std::string_view word) {
  return std::find(kModes.begin(), kModes.end(), word) != kModes.end();
}

bool isFlag(std::string_view word) {
  return std::find(kFlags.begin(), kFlags.end(), word) != kFlags.end();
}

void checkTracks(const Disc& disc, Findings& findings) {
  int number = 0;
  for (const Track& t : disc.sheet.tracks) {
    ++number;
    checkMode(t, number, findings);
    if (t.flags) checkFlags(*t.flags, number, findings);
  }
}

}  // namespace velmor::check
