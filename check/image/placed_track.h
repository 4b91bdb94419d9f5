// The tracks whose sound can be looked into.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "check/image/opened_disc.h"

namespace velmor::check {

/// An audio track with a start in an image that was scanned. Valid as long as its disc.
struct PlacedTrack {
  const TrackPlace* place;
  const AudioMap* map;
  const ImageFile* image;
  int line;    ///< of its INDEX 01
  int number;  ///< as counted, 1 and up
  bool has_gap;
};

/// In the order of the sheet; no more than a disc has.
std::vector<PlacedTrack> placedTracks(const Disc& disc);

/// Sectors of one FILE.
struct Stretch {
  size_t file = 0;
  int64_t first = 0;
  int64_t end = 0;  ///< one past the last
};

/// Where the pause before `track` (INDEX 00 to INDEX 01) lies, in its own FILE or at the end of the
/// one before; empty without one.
Stretch pauseBefore(const Disc& disc, const PlacedTrack& track);

/// The `frames` stereo frames that are heard before the track's start when the disc is played
/// through: of its own FILE, of the one before where it begins its own, and silence where the sheet
/// adds some, a FILE ends inside a sector, or the disc begins.
std::vector<int16_t> framesBefore(const Disc& disc, const PlacedTrack& track, size_t frames);
/// Those from the start on; silence behind the image's end.
std::vector<int16_t> framesFrom(const PlacedTrack& track, size_t frames);

}  // namespace velmor::check
