#include "host/render/plan/preflight_starts.h"

#include <cstddef>
#include <string>
#include <vector>

#include "disc/text/phrases.h"
#include "disc/units/disc_units.h"
#include "host/render/plan/sheet_times.h"

namespace velmor::render {

namespace {

/// "track 2", or "tracks 2, 4 and 7"; counted from 0 in `tracks`, which is not empty.
std::string tracksListed(const std::vector<size_t>& tracks) {
  std::vector<std::string> numbers;
  numbers.reserve(tracks.size());
  for (const size_t track : tracks) numbers.push_back(std::to_string(track + 1));
  return (tracks.size() == 1 ? "track " : "tracks ") + disc::listed(numbers);
}

void checkInsideSector(const TrackPlan& plan, PreflightFindings& findings) {
  std::vector<size_t> inside;
  for (size_t i = 0; i < plan.tracks.size(); ++i) {
    if (plan.tracks[i].start_frame % disc::kFramesPerSector) inside.push_back(i);
  }
  if (inside.empty()) return;
  const std::string first = std::to_string(inside.front() + 1);
  findings.warnings.push_back(
      (inside.size() == 1
           ? "track " + first + " starts"
           : std::to_string(inside.size()) + " tracks (the first is " + first + ") start") +
      " inside a sector, so the sheet points up to 1/75 second before the music; --track-leadin "
      "aligns tracks to sectors");
}

/// The module cuts times to milliseconds before it cuts them to sectors. Two of three sectors do
/// not begin on a whole millisecond, so their tracks end up one sector early in the sheet.
void checkEarlyStarts(const TrackPlan& plan, PreflightFindings& findings) {
  std::vector<size_t> early;
  for (size_t i = 0; i < plan.tracks.size(); ++i) {
    const int64_t frame = plan.tracks[i].start_frame;
    if (frame % disc::kFramesPerSector) continue;
    if (startSectorInSheet(plan, i) < frame / disc::kFramesPerSector) early.push_back(i);
  }
  if (early.empty()) return;
  findings.warnings.push_back("INDEX 01 of " + tracksListed(early) +
                              " lies one sector before the audio, since the sheet's times are cut "
                              "to milliseconds; the sheet of --portable-cue has the exact "
                              "sectors");
}

void checkMeetingIndexes(const SinkConfig& config, const TrackPlan& plan,
                         PreflightFindings& findings) {
  std::vector<size_t> meeting;
  for (size_t i = 0; i < plan.tracks.size(); ++i) {
    if (gapSectorInSheet(config, plan, i) == startSectorInSheet(plan, i)) meeting.push_back(i);
  }
  if (meeting.empty()) return;
  findings.warnings.push_back(
      "INDEX 00 and INDEX 01 of " + tracksListed(meeting) +
      " are the same sector in the sheet, since the lead-in is so short, and some readers refuse "
      "that; use a lead-in of 0 or at least 1000 ms");
}

}  // namespace

void checkStarts(const SinkConfig& config, const TrackPlan& plan, PreflightFindings& findings) {
  checkInsideSector(plan, findings);
  checkEarlyStarts(plan, findings);
  checkMeetingIndexes(config, plan, findings);
}

}  // namespace velmor::render
