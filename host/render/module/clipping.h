// Samples beyond full scale, which the image cannot hold.
#pragma once

#include <cstdint>
#include <span>

namespace velmor::render {

struct Clipping {
  int64_t samples = 0;       ///< beyond full scale, or no number at all
  int64_t first_frame = -1;  ///< where the first one is, from the render's start
  int64_t worst_frame = -1;  ///< where the one furthest beyond is, the first of equal ones
  double peak = 0.0;         ///< its magnitude, full scale 1.0; infinite where it is no number

  /// Looks at a stretch of both channels, equally long, that begins `start` frames from the
  /// render's start. Stretches come in the order of the render.
  void look(std::span<const double> left, std::span<const double> right, int64_t start);
};

}  // namespace velmor::render
