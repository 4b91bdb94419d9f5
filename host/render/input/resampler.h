// A source's rate to the disc's, block by block, with an exact length.
#pragma once

#include <soxr.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>

#include "disc/failure.h"

namespace velmor::render {

/// Frames at the disc's rate for `frames` frames (0 or more) at `rate` Hz (above 0): the exact
/// quotient rounded to the nearest, halves up, so that a source ends within half a frame of where
/// it did.
int64_t framesAtDiscRate(int64_t frames, int rate);

/// One or two planar channels of doubles from `rate` to the disc's rate, linear phase, delay
/// compensated. One thread.
class Resampler {
 public:
  /// `rate` in Hz, above 0; `channels` 1 or 2. Throws `Failure` with the library's own reason, e.g.
  /// for a rate out of its reach.
  Resampler(int rate, unsigned channels);

  struct Step {
    size_t taken = 0;  ///< input frames used up
    size_t made = 0;   ///< output frames written
  };
  /// `in` and `out` hold one pointer per channel. Throws `Failure`.
  Step process(const double* const* in, size_t in_frames, double* const* out, size_t out_frames);
  /// Called when the input has ended: delivers at most `out_frames` frames of what the filter still
  /// holds, and their number; 0 when nothing is left.
  size_t drain(double* const* out, size_t out_frames);

 private:
  struct Delete {
    void operator()(soxr_t resampler) const { soxr_delete(resampler); }
  };
  std::unique_ptr<std::remove_pointer_t<soxr_t>, Delete> m_soxr;
};

}  // namespace velmor::render
