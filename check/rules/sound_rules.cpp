#include <algorithm>
#include <functional>

#include "check/image/byte_order.h"
#include "check/image/join.h"
#include "check/image/placed_track.h"
#include "check/rules/places.h"
#include "check/rules/rules.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

/// Sectors whose loudest sample lies below it are a pause to the ear, though not to the bit: 46 dB
/// below full scale.
constexpr int kSound = 164;

/// What puts the bytes of the samples into the order that the sheet says.
std::string orderAdvice(const std::string& type) {
  if (type == "BINARY") return "Write MOTOROLA instead of BINARY, or swap the bytes of the image.";
  if (type == "MOTOROLA")
    return "Write BINARY instead of MOTOROLA, or swap the bytes of the image.";
  return "Export it again from what it was made of.";
}

/// One finding for a FILE that is the wrong way round as a whole; a track by itself has come from
/// somewhere else than its neighbours.
void checkByteOrder(const Disc& disc, const std::vector<PlacedTrack>& placed, Findings& findings) {
  for (size_t f = 0; f < disc.images.size(); ++f) {
    std::vector<const PlacedTrack*> swapped;
    size_t tracks = 0;
    for (const PlacedTrack& t : placed) {
      if (t.place->file != f) continue;
      ++tracks;
      const int64_t end = std::min(t.place->own_end, t.map->sectors());
      if (bytesLookSwapped(*t.image, std::min(t.place->start, end), end)) swapped.push_back(&t);
    }
    const disc::File& file = disc.sheet.files[f];
    if (tracks > 0 && swapped.size() == tracks) {
      findings.add(Severity::kError, "byte-order-swapped", {file.name.line},
                   "the samples of " + shown(disc.images[f]) +
                       " have their two bytes the other way round than " + file.type +
                       " says: it sounds as noise",
                   orderAdvice(file.type), kSheetRules);
      continue;
    }
    for (const PlacedTrack* t : swapped)
      findings.add(Severity::kError, "byte-order-swapped", placeOf(*t),
                   "the samples of this track, but not of all, have their two bytes the other way "
                   "round: it sounds as noise",
                   "Swap the bytes of its audio and make the image again.", kSheetRules);
  }
}

bool allSectors(const PlacedTrack& t, const std::function<bool(const Channels&)>& such) {
  for (int64_t s = t.place->start; s < std::min(t.place->own_end, t.map->sectors()); ++s)
    if (!such(t.map->channels(s))) return false;
  return true;
}

bool soundsAtAll(const PlacedTrack& t) {
  for (int64_t s = t.place->start; s < std::min(t.place->own_end, t.map->sectors()); ++s)
    if (t.map->peak(s) >= kSound) return true;
  return false;
}

void checkChannels(const std::vector<PlacedTrack>& placed, Findings& findings) {
  std::vector<const PlacedTrack*> same;
  for (const PlacedTrack& t : placed) {
    if (!soundsAtAll(t)) continue;
    const bool left = allSectors(t, [](const Channels& c) { return c.left_silent; });
    const bool right = allSectors(t, [](const Channels& c) { return c.right_silent; });
    if (left || right)
      findings.add(Severity::kWarning, "channel-silent", placeOf(t),
                   std::string("the ") + (left ? "left" : "right") +
                       " channel is silent from the track's start to its end",
                   "Check the cable or the bus that the other channel came from; a mono recording "
                   "belongs on both.");
    else if (allSectors(t, [](const Channels& c) { return c.same; }))
      same.push_back(&t);
  }
  const bool whole_disc = same.size() > 1 && same.size() == placed.size();
  if (whole_disc)
    findings.add(Severity::kNote, "channels-same", placeOf(*same.front()),
                 "both channels are the same on this and every other track: the disc is mono",
                 "Nothing, if that is meant.");
  for (const PlacedTrack* t : same)
    if (!whole_disc)
      findings.add(Severity::kNote, "channels-same", placeOf(*t),
                   "both channels are the same from the track's start to its end: it is mono",
                   "Nothing, if that is meant.");
}

/// Sound before INDEX 01: a player that is told to play the track leaves it out.
void checkPause(const Disc& disc, const PlacedTrack& t, Findings& findings) {
  const Stretch pause = pauseBefore(disc, t);
  if (pause.first >= pause.end || !disc.audio[pause.file]) return;
  const AudioMap& map = *disc.audio[pause.file];
  if (t.map->peak(t.place->start) < kSound) return;
  int64_t begin = pause.end;
  while (begin > pause.first && map.peak(begin - 1) >= kSound) --begin;
  if (begin == pause.end) return;
  const std::string length = disc::secondsText(pause.end - begin);
  if (begin == pause.first)
    findings.add(
        Severity::kWarning, "sound-in-pause", placeOf(t),
        "sound runs through the whole pause before the track, " + length + ", and into INDEX 01",
        "Nothing on a live recording; else who chooses the track hears it begin in the "
        "middle: move INDEX 01, or take INDEX 00 out.");
  else
    findings.add(Severity::kWarning, "sound-in-pause", placeOf(t),
                 "the sound begins in the pause, at " + disc::msfText(begin) + ", " + length +
                     " before INDEX 01: who chooses the track does not hear its beginning",
                 "Move INDEX 01 to " + disc::msfText(begin) + '.');
}

void checkJoin(const Disc& disc, const PlacedTrack& t, Findings& findings) {
  if (t.place->start >= t.map->sectors() || t.map->peak(t.place->start) < kSound) return;
  const std::string at = disc::msfText(t.place->start);
  switch (joinBetween(framesBefore(disc, t, kJoinFrames), framesFrom(t, kJoinFrames))) {
    case Join::kRunsOn:
      return;
    case Join::kFromSilence:
      findings.add(Severity::kWarning, "start-cut-into-sound", placeOf(t),
                   "the track starts in the middle of a sound, at " + at +
                       ": after silence its first sample is at full level",
                   "Listen to the start: it clicks. Begin earlier, or fade in over some "
                   "milliseconds.");
      return;
    case Join::kBetweenSounds:
      findings.add(Severity::kWarning, "start-cut-into-sound", placeOf(t),
                   "one sound breaks off at " + at +
                       ", where the track starts, and another one goes on in its middle",
                   "Listen to the start: the join is audible. Fade out and in, or leave a pause.");
      return;
  }
}

}  // namespace

void checkSound(const Disc& disc, Findings& findings) {
  const std::vector<PlacedTrack> placed = placedTracks(disc);
  checkByteOrder(disc, placed, findings);
  checkChannels(placed, findings);
  for (const PlacedTrack& t : placed) {
    checkPause(disc, t, findings);
    checkJoin(disc, t, findings);
  }
}

}  // namespace velmor::check
