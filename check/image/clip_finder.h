// Finds clipped samples in an image that is read a batch at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

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

/// Follows both channels over the batches, which come in their order and without a gap.
class ClipFinder {
 public:
  /// Stereo frames that must be writable before and behind every batch.
  static constexpr size_t kMargin = 2;

  /// Looks at the next batch: `frames` stereo frames at `batch`, the first of them the file's frame
  /// `first_frame`. Only sectors of `touched`, counted from the batch's first one, have a sample at
  /// full scale. Writes into the margins.
  void readBatch(int16_t* batch, size_t frames, int64_t first_frame,
                 const std::vector<size_t>& touched);
  /// The runs, after the last batch.
  ClippedRuns finish();

 private:
  struct Open {
    ClippedRun run;  ///< at the end of the last batch; 0 samples: none
    int16_t level = 0;
  };

  void goOn(size_t channel, const int16_t* batch, size_t frames);
  void readSector(const int16_t* batch, size_t frames, size_t first, int64_t first_frame);
  void readRun(const int16_t* batch, size_t frames, size_t sample, int64_t first_frame);
  void noteEnd(size_t channel, const int16_t* batch, size_t frames, int64_t first_frame);
  void close(const ClippedRun& run);

  ClippedRuns m_found;
  std::array<Open, 2> m_open{};
  std::array<int16_t, 2> m_last_frame{};
};

}  // namespace velmor::check
