#include <algorithm>

#include "check/image/placed_track.h"
#include "check/image/sector_edge.h"
#include "check/rules/places.h"
#include "check/rules/rules.h"
#include "disc/units/disc_limits.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

/// Silence that a listener takes for a late start, or for an end that is too long: half a second,
/// and three.
constexpr int64_t kLateStart = 38;
constexpr int64_t kLongEnd = 225;

void checkStart(const PlacedTrack& t, Findings& findings) {
  if (t.place->end <= t.place->start) return;
  const int64_t sound = t.map->firstSound(t.place->start, t.place->end);
  const int64_t silence = sound - t.place->start;
  if (sound == t.place->end) {
    findings.add(Severity::kWarning, "silent-track", placeOf(t),
                 "the track is digital silence whole", "Check that the right audio was rendered.");
  } else if (silence >= kLateStart) {
    findings.add(Severity::kWarning, "silence-at-start", placeOf(t),
                 "the title starts with " + disc::secondsText(silence) + " of digital silence",
                 "Move the track's start to " + disc::msfText(sound) + ", or cut the silence.");
  }
}

void checkInsideSector(const PlacedTrack& t, const Disc& disc, Findings& findings) {
  const int64_t s = t.place->start;
  if (s == 0 || s >= t.map->sectors() || t.map->silent(s)) return;
  const SectorEdge edge = lookAtSector(*t.image, s);
  if (edge.tail > 0 && !t.map->silent(s - 1)) {
    findings.add(Severity::kWarning, "starts-inside-sector", placeOf(t),
                 "the track's first sector begins with " + std::to_string(edge.tail) +
                     " samples of the one before, then a pause: they would be heard",
                 "Start the track at a sector boundary (a lead-in does that), or cut the audio "
                 "there.",
                 "Red Book (IEC 60908)");
  } else if (edge.first_sound == 0 && !t.has_gap && !t.map->silent(s - 1) &&
             timesLookTruncated(disc.sheet)) {
    findings.add(Severity::kNote, "start-not-told", placeOf(t),
                 "sound runs through the track's start without a lead-in, and the sheet's times "
                 "are truncated: up to 617 samples of the one before may come first",
                 "Listen to the start; set a lead-in, or place the marker on a sector.");
  }
}

void checkClipped(const Disc& disc, const std::vector<PlacedTrack>& placed, Findings& findings) {
  for (const PlacedTrack& t : placed) {
    const auto& runs = t.map->clippedRuns();
    const auto before = [](const ClippedRun& r, int64_t frame) { return r.frame < frame; };
    const auto first =
        std::lower_bound(runs.begin(), runs.end(), t.place->start * disc::kFramesPerSector, before);
    const auto last =
        std::lower_bound(first, runs.end(), t.place->end * disc::kFramesPerSector, before);
    if (first == last) continue;
    int64_t longest = 0;
    for (auto r = first; r != last; ++r) longest = std::max(longest, r->samples);
    findings.add(Severity::kWarning, "clipped", placeOf(t),
                 std::to_string(last - first) + " runs of samples at full scale, the longest " +
                     std::to_string(longest) + ", the first at " +
                     disc::msfText(first->frame / disc::kFramesPerSector),
                 "Lower the level before the render if that was not meant.");
  }
  for (const auto& map : disc.audio) {
    if (!map || map->clippedRunsLeftOut() == 0) continue;
    findings.add(Severity::kWarning, "clipped", {},
                 std::to_string(map->clippedRunsLeftOut()) + " more clipped runs are not listed",
                 "Lower the level before the render.");
  }
}

void checkEnd(const Disc& disc, Findings& findings) {
  // The silence at the end of another FILE is a pause between tracks.
  const std::vector<bool> used = filesInUse(disc.sheet);
  size_t last = 0;
  for (size_t f = 0; f < disc.audio.size(); ++f)
    if (used[f]) last = f;
  for (size_t f = 0; f < disc.audio.size(); ++f) {
    if (!disc.audio[f]) continue;
    const AudioMap& map = *disc.audio[f];
    const int64_t silence = map.silentBefore(map.sectors(), 0);
    if (map.brokeOff())
      findings.add(Severity::kError, "image-unreadable", {disc.sheet.files[f].name.line, 0},
                   "reading broke off at sector " + std::to_string(map.sectors()),
                   "Copy the image from its source again.");
    const bool end_of_disc = f == last && map.sectors() == disc.images[f].sectors();
    if (end_of_disc && silence >= kLongEnd && silence < map.sectors())
      findings.add(Severity::kNote, "silence-at-end", {disc.sheet.files[f].name.line, 0},
                   "the image ends with " + disc::secondsText(silence) + " of digital silence",
                   "Shorten the render if that was not meant.");
  }
}

}  // namespace

void checkAudio(const Disc& disc, Findings& findings) {
  const std::vector<PlacedTrack> placed = placedTracks(disc);
  for (const PlacedTrack& t : placed) {
    checkStart(t, findings);
    checkInsideSector(t, disc, findings);
  }
  checkClipped(disc, placed, findings);
  checkEnd(disc, findings);
}

}  // namespace velmor::check
