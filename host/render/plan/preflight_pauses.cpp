#include "host/render/plan/preflight_pauses.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "disc/text/phrases.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::render {

namespace {

constexpr const char* kKept =
    "; the sheet of --portable-cue, the set of --ddp and a burned disc have them to the sector";

/// "3 (0:02.000)": a track, from 0, and the length of its pause.
std::string shown(size_t track, int64_t frames) {
  return std::to_string(track + 1) + " (" + disc::clockTime(disc::secondsOf(frames)) + ")";
}

void warn(const std::vector<std::string>& tracks, const std::string& rest,
          PreflightFindings& findings) {
  if (tracks.empty()) return;
  const bool one = tracks.size() == 1;
  findings.warnings.push_back((one ? "the pause before track " : "the pauses before tracks ") +
                              disc::listed(tracks) + rest);
}

}  // namespace

void checkPauses(const TrackPlan& plan, PreflightFindings& findings) {
  std::vector<std::string> kept, lost;
  for (size_t i = 0; i < plan.tracks.size(); ++i) {
    const PlannedTrack& track = plan.tracks[i];
    if (track.hasOwnPause()) kept.push_back(shown(i, track.pause_before + track.pause_behind));
    if (track.pause_lost) lost.push_back(std::to_string(i + 1));
  }
  warn(kept,
       std::string(kept.size() == 1 ? " has" : " have") +
           " no INDEX 00 in the new sheet, which knows one length of lead-in for all tracks" +
           kKept,
       findings);
  warn(lost,
       std::string(lost.size() == 1 ? " is" : " are") +
           " left out: a track would be shorter than the 4 seconds that a disc asks for; the audio "
           "is kept",
       findings);
}

}  // namespace velmor::render
