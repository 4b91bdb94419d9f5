// What the classes under test give back to the system, and whose caching they switch off.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace support_test {

/// Records while it lives: one at a time. Only what code of this program does for itself is seen,
/// not what its libraries do.
class RecordedReleases {
 public:
  RecordedReleases();
  ~RecordedReleases();
  RecordedReleases(const RecordedReleases&) = delete;
  RecordedReleases& operator=(const RecordedReleases&) = delete;

  /// How often the block was freed.
  static int timesFreed(const void* block);
  /// The stretches that were unmapped: address and length.
  static const std::vector<std::pair<void*, size_t>>& unmapped();
  /// The descriptors whose write caching was switched off.
  static const std::vector<int>& uncached();
};

}  // namespace support_test
