// What one pass over the samples of an image shows: where it is silent, and where it is clipped.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "check/image/image_file.h"
#include "check/samples/clip_finder.h"
#include "check/samples/sample_loops.h"

namespace velmor::check {

/// Called now and then with the bytes done; on the thread that scans.
using Progress = std::function<void(int64_t bytes_done)>;

class AudioMap {
 public:
  /// Twice what any disc holds and more: what lies behind it is not looked into.
  static constexpr int64_t kMostSectors = 1'000'000;
  /// Bytes of the image that `scan` reads.
  static int64_t bytesToScan(const ImageFile& image);

  /// Reads `image`, which is readable, once from start to end. A read error ends the map early (see
  /// `brokeOff`). `progress` may be empty.
  static AudioMap scan(const ImageFile& image, const Progress& progress);

  int64_t sectors() const { return static_cast<int64_t>(m_sectors.size()); }
  /// Is every sample of the sector zero? What lies outside the image is not.
  bool silent(int64_t sector) const { return contains(sector) && at(sector).peak == 0; }
  /// The sample farthest from zero, 0 to 32768; 0 outside the image.
  int peak(int64_t sector) const { return contains(sector) ? at(sector).peak : 0; }
  /// How the channels of a sector of the image compare.
  Channels channels(int64_t sector) const { return at(sector).channels; }
  /// The first sector from `sector` up to `end` (not included) that is not silent, else `end`.
  /// `sector` is not beyond `end`.
  int64_t firstSound(int64_t sector, int64_t end) const;
  /// How many sectors before `end`, down to `begin`, are silent without a break. `begin` is not
  /// beyond `end`.
  int64_t silentBefore(int64_t end, int64_t begin) const;

  /// Of both channels, by their first frame.
  const std::vector<ClippedRun>& clippedRuns() const { return m_clipped.runs; }
  int64_t clippedRunsLeftOut() const { return m_clipped.left_out; }
  /// Did a read fail, so that the map ends early?
  bool brokeOff() const { return m_broke_off; }

 private:
  class Scan;

  struct Sector {
    uint16_t peak = 0;
    Channels channels;
  };

  bool contains(int64_t sector) const { return sector >= 0 && sector < sectors(); }
  const Sector& at(int64_t sector) const { return m_sectors[static_cast<size_t>(sector)]; }

  std::vector<Sector> m_sectors;
  ClippedRuns m_clipped;
  bool m_broke_off = false;
};

}  // namespace velmor::check
