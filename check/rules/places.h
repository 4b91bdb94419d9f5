// How findings name the tracks and images that they are about.
#pragma once

#include <string>

#include "check/image/placed_track.h"
#include "check/report/findings.h"
#include "disc/text/phrases.h"

namespace velmor::check {

inline Place placeOf(const PlacedTrack& t) {
  return {t.line, t.number};
}

/// The name of its file in quotes, without the folder, cut where it is endless.
inline std::string shown(const ImageFile& image) {
  return disc::inQuotes(image.path().filename().string().substr(0, 200));
}

}  // namespace velmor::check
