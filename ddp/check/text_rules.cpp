#include "ddp/check/rules.h"
#include "disc/cd_text/pack_reading.h"
#include "disc/text/phrases.h"

namespace velmor::ddp {

using check::Findings;
using check::Severity;

disc::DiscTexts judgeTexts(std::string_view bytes, const std::string& file, size_t tracks,
                           Findings& findings) {
  constexpr std::string_view kCdText = "MMC-3 annex J (CD-TEXT)";
  disc::ReadPacks read = disc::readPacks(bytes);
  for (const disc::PackProblem& problem : read.problems) {
    const bool wrong = problem.trouble == disc::PackTrouble::kWrong;
    findings.add(wrong ? Severity::kError : Severity::kWarning,
                 wrong ? "cd-text-pack" : "cd-text-odd", {static_cast<int>(problem.pack), 0, file},
                 problem.what,
                 wrong ? "Ask for the set anew; the texts were cut or changed on their way."
                       : "Ask the plant whether it takes them so.",
                 kCdText);
  }
  const bool counted = read.last_track > 0 && tracks > 0;
  if (counted && (read.first_track != 1 || static_cast<size_t>(read.last_track) != tracks))
    findings.add(Severity::kError, "cd-text-tracks", {0, 0, file},
                 "the texts are for tracks " + std::to_string(read.first_track) + " to " +
                     std::to_string(read.last_track) + ", and the disc has " +
                     std::to_string(tracks),
                 "Ask for the set anew: its texts are another disc's.", kCdText);
  return std::move(read.texts);
}

}  // namespace velmor::ddp
