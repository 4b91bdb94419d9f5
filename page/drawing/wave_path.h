// The outline of a stretch of sound as the data of an SVG path.
#pragma once

#include <string>

#include "page/measure/outline.h"

namespace velmor::page {

/// Units from the middle of a drawn wave to full scale.
inline constexpr int kHalfHeight = 100;

/// How a stretch is drawn: `columns` units wide, all that is beyond `gain` times full scale cut.
struct WaveShape {
  int columns = 0;
  int gain = 1;
};

/// A closed path, 2 * `kHalfHeight` high: the upper edge from left to right, the lower one back.
std::string wavePath(const Outline& outline, const Stretch& stretch, const WaveShape& shape);

/// The largest power of two, at most 64, by which the stretch can be enlarged without being cut.
int gainFor(const Outline& outline, const Stretch& stretch);

}  // namespace velmor::page
