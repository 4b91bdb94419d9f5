// Loudness and true peak (EBU R 128, ITU-R BS.1770).
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "page/measure/outline.h"

namespace velmor::page {

/// What is not above the gate has no loudness: minus infinity.
struct Loudness {
  double lufs = 0.0;       ///< integrated
  double true_peak = 0.0;  ///< of full scale 1.0
};

/// One measurement while the samples pass by. One thread.
class LoudnessMeter {
 public:
  /// Throws `std::bad_alloc`.
  LoudnessMeter();
  ~LoudnessMeter();
  LoudnessMeter(LoudnessMeter&& other) noexcept;
  LoudnessMeter& operator=(LoudnessMeter&&) = delete;

  void add(const int16_t* samples, size_t frames);
  Loudness result() const;

  /// Of all together, as one programme: their quiet parts are gated against the whole.
  static Loudness ofAll(const std::vector<const LoudnessMeter*>& meters);

 private:
  void* m_state;
};

/// Measures one track of the disc. Throws what `progress` throws.
LoudnessMeter measureTrack(const PageDisc& disc, size_t track, const SectorsDone& progress);

}  // namespace velmor::page
