// Times, markers and regions as they are written on the command line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "disc/failure.h"
#include "host/render/input/marks/mark.h"

namespace velmor::render {

/// A time like 01:02:03, which is read as MM:SS:FF and may have been meant as hours, minutes and
/// seconds.
struct TwoFacedTime {
  std::string text;        ///< as it was given
  double as_frames = 0.0;  ///< seconds, as it is read
  double as_hours = 0.0;   ///< seconds, as it may have been meant
};

/// A time as seconds ("12.5"), MM:SS.mmm, H:MM:SS.mmm or MM:SS:FF (75 frames a second), never
/// negative. One that could be hours as well is added to `two_faced`, unless that is null. Throws
/// `Failure`.
double parseTime(std::string_view text, std::vector<TwoFacedTime>* two_faced = nullptr);
/// TIME=NAME, likewise.
Mark parseMarkerOption(std::string_view text, std::vector<TwoFacedTime>* two_faced = nullptr);
/// START-END=NAME, likewise.
Mark parseRegionOption(std::string_view text, std::vector<TwoFacedTime>* two_faced = nullptr);

}  // namespace velmor::render
