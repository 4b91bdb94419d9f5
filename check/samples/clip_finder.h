// Finds clipped samples in an image that is read a batch at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "check/samples/sample_loops.h"

namespace velmor::check {

/// Samples of one channel that stay at full scale (32767 or -32768, one of the two).
struct ClippedRun {
  int64_t frame = 0;  ///< of its first sample, from the file's first
  int64_t samples = 0;
};

/// Three samples in a row at full scale: a converter's overload, not a peak that touches it.
inline constexpr int64_t kClippedRun = 3;

/// What was found, of both channels.
struct ClippedRuns {
  static constexpr size_t kMost = 100000;

  std::vector<ClippedRun> runs;  ///< no more than `kMost`, by their first frame once finished
  int64_t left_out = 0;          ///< runs beyond those
};

/// A sector in which runs may begin or end.
struct LoudSector {
  size_t sector;         ///< of its batch
  uint32_t turn_blocks;  ///< see SectorLook
};

/// Follows both channels over the batches, which come in their order and without a gap.
class ClipFinder {
 public:
  explicit ClipFinder(const SampleLoops& loops) : m_loops(loops) {}

  /// Looks at the next batch, `sectors` sectors at `batch`, before which kTurnsLookBack samples
  /// must be writable, and kTurnsLookAhead readable behind it. Runs begin and end in the
  /// sectors of `loud` alone. `first_frame` is the batch's first one in the file.
  void readBatch(int16_t* batch, size_t sectors, int64_t first_frame,
                 const std::vector<LoudSector>& loud);
  /// The runs, after the last batch.
  ClippedRuns finish();

 private:
  static constexpr int64_t kNone = -1;

  void readLastFrame(int16_t left_behind, int16_t right_behind);
  void readTurns(const BlockTurns& turns, int64_t first_frame);
  void close(size_t channel, int64_t end);
  bool full() const { return m_found.runs.size() == ClippedRuns::kMost; }

  const SampleLoops& m_loops;
  ClippedRuns m_found;
  int64_t m_begun = 0;                          ///< runs, those left out as well
  std::array<int64_t, 2> m_open{kNone, kNone};  ///< first frame of the run that has not ended
  int64_t m_end = 0;                            ///< frame behind the last batch
  std::array<int16_t, kTurnsLookBack + 2> m_last_samples{};
};

}  // namespace velmor::check
