#include "page/drawing/finding_places.h"

#include "check/report/findings.h"
#include "disc/units/disc_units.h"

namespace velmor::page {

namespace {

/// The first sector of the silence that the last audio track ends with.
std::optional<int64_t> lastSilence(const PageDisc& disc, const MeasuredDisc& measured) {
  for (size_t t = disc.tracks.size(); t-- > 0;) {
    const auto& track = measured.outline.tracks[t];
    if (!track) continue;
    return disc.tracks[t].place->end - track->silent_at_end / disc::kFramesPerSector;
  }
  return std::nullopt;
}

std::optional<int64_t> placeOf(const check::Finding& finding, const PageDisc& disc,
                               const MeasuredDisc& measured) {
  if (finding.rule == "silence-at-end") return lastSilence(disc, measured);
  if (finding.track < 1 || static_cast<size_t>(finding.track) > disc.tracks.size())
    return std::nullopt;
  const auto t = static_cast<size_t>(finding.track) - 1;
  if (!disc.tracks[t].place) return std::nullopt;
  if (finding.rule == "clipped" && measured.clipped[t].first) return measured.clipped[t].first;
  return disc.tracks[t].place->begin;
}

}  // namespace

std::vector<std::optional<int64_t>> findingPlaces(const PageDisc& disc,
                                                  const MeasuredDisc& measured) {
  std::vector<std::optional<int64_t>> places;
  for (const check::Finding& finding : disc.findings) {
    auto place = placeOf(finding, disc, measured);
    const bool drawn =
        place && *place >= measured.outline.begin && *place <= measured.outline.end();
    places.push_back(drawn ? place : std::nullopt);
  }
  return places;
}

}  // namespace velmor::page
