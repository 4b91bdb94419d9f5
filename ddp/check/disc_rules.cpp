#include <algorithm>

#include "check/rules/rules.h"
#include "ddp/check/rules.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_time.h"

namespace velmor::ddp {

namespace {

using check::Findings;
using check::Severity;

/// The disc as a sheet would have it, whose times count from behind the pause that every disc has.
disc::Sheet sheetOf(const SetLayout& layout) {
  disc::Sheet sheet;
  if (!layout.catalogue.empty()) sheet.catalog = disc::Text{layout.catalogue};
  int number = 0;
  for (const SetTrack& from : layout.tracks) {
    disc::Track track;
    track.number = ++number;
    track.mode = "AUDIO";
    if (!from.isrc.empty()) track.isrc = disc::Text{from.isrc};
    for (const IndexPoint& index : from.indices) {
      const bool pause_alone =
          number == 1 && index.number == 0 && from.at(1) == kShortestFirstPregap;
      const int64_t sector = std::max<int64_t>(index.sector - kShortestFirstPregap, 0);
      if (!pause_alone) track.indices.push_back({index.number, disc::msfOf(sector), 0, 0});
    }
    sheet.tracks.push_back(std::move(track));
  }
  return sheet;
}

check::Disc discOf(const SetLayout& layout) {
  check::Disc disc;
  disc.sheet = sheetOf(layout);
  disc.length = layout.sectors - kShortestFirstPregap;
  disc.length_known = true;
  for (size_t t = 0; t < layout.tracks.size(); ++t) {
    const SetTrack* next = t + 1 < layout.tracks.size() ? &layout.tracks[t + 1] : nullptr;
    const int64_t end = next ? next->at(1) : layout.sectors;
    check::TrackPlace place;
    place.start = layout.tracks[t].at(1) - kShortestFirstPregap;
    place.end = end - kShortestFirstPregap;
    place.own_end = next && next->at(0) >= 0 ? next->at(0) - kShortestFirstPregap : place.end;
    place.end_known = true;
    disc.places.emplace_back(place);
  }
  return disc;
}

}  // namespace

void judgeDisc(const SetLayout& layout, Findings& findings) {
  if (layout.tracks.front().at(1) < kShortestFirstPregap) {
    findings.add(Severity::kError, "first-pregap", {0, 1},
                 "track 1 starts " + std::to_string(layout.tracks.front().at(1)) +
                     " sectors after the begin, and 150 (2 s) is the least",
                 "Ask for a set with the pause that every disc has before track 1.", kLevel);
    return;
  }
  const check::Disc disc = discOf(layout);
  check::checkCodes(disc, findings);
  check::checkLayout(disc, findings);
}

}  // namespace velmor::ddp
