// Loudness and true peak (EBU R 128, ITU-R BS.1770).
#pragma once

#include <vector>

#include "page/measure/outline.h"

namespace velmor::page {

/// What is not above the gate has no loudness: minus infinity.
struct Loudness {
  double lufs = 0.0;       ///< integrated
  double true_peak = 0.0;  ///< of full scale 1.0
};

/// The measurement of one programme's loudness while its samples pass by. One thread.
class LoudnessMeter {
 public:
  /// Throws `std::bad_alloc`.
  LoudnessMeter();
  ~LoudnessMeter();
  LoudnessMeter(LoudnessMeter&& other) noexcept;
  LoudnessMeter& operator=(LoudnessMeter&&) = delete;

  /// Throws `std::bad_alloc`.
  void add(const int16_t* samples, size_t frames);

  /// LUFS of all together, as one programme: their quiet parts are gated against the whole.
  static double lufsOf(const std::vector<const LoudnessMeter*>& meters);

 private:
  void* m_state;
};

/// Measures the loudness of one track of the disc. Throws what `progress` throws.
LoudnessMeter measureLoudness(const PageDisc& disc, size_t track, const SectorsDone& progress);

/// The true peak of a piece of one track of the disc, as it is in the midst of the track: that of
/// the track is the highest of its pieces. Throws what `progress` throws, and `std::bad_alloc`.
double measureTruePeak(const PageDisc& disc, size_t track, const Stretch& piece,
                       const SectorsDone& progress);

}  // namespace velmor::page
