// What one pass over the samples of an image shows: where it is silent, and where it is clipped.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "check/image/image_file.h"

namespace velmor::check {

/// Called now and then with the bytes done; on the thread that scans.
using Progress = std::function<void(int64_t bytes_done)>;

/// Samples of one channel that stay at full scale (32767 or -32768, one of the two).
struct ClippedRun {
  int64_t frame = 0;  ///< of its first sample, from the file's first
  int64_t samples = 0;
};

/// Three samples in a row at full scale: a converter's overload, not a peak that touches it.
inline constexpr int64_t kClippedRun = 3;

class AudioMap {
 public:
  /// Reads `image`, which is readable, once from start to end. A read error ends the map early (see
  /// `brokeOff`). `progress` may be empty.
  static AudioMap scan(const ImageFile& image, const Progress& progress);

  int64_t sectors() const { return static_cast<int64_t>(m_silent.size()); }
  /// Is every sample of the sector zero? What lies outside the image is not.
  bool silent(int64_t sector) const {
    return sector >= 0 && sector < sectors() && m_silent[static_cast<size_t>(sector)];
  }
  /// The first sector from `sector` up to `end` (not included) that is not silent, else `end`.
  /// `sector` is not beyond `end`.
  int64_t firstSound(int64_t sector, int64_t end) const;
  /// How many sectors before `end`, down to `begin`, are silent without a break. `begin` is not
  /// beyond `end`.
  int64_t silentBefore(int64_t end, int64_t begin) const;

  /// Of both channels, by their first frame.
  const std::vector<ClippedRun>& clippedRuns() const { return m_runs; }
  int64_t clippedRunsLeftOut() const { return m_runs_left_out; }
  /// Did a read fail, so that the map ends early?
  bool brokeOff() const { return m_broke_off; }

 private:
  friend class ClipFinder;
  std::vector<bool> m_silent;
  std::vector<ClippedRun> m_runs;
  int64_t m_runs_left_out = 0;
  bool m_broke_off = false;
};

}  // namespace velmor::check
