// Triangular dither for 16-bit discs, of one channel.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmor::render {

/// From so many frames on, a stretch of a channel that fits 16 bits stays as it is. A sector: no
/// music of more bits hits whole steps for so long, and no pause that anybody means is shorter.
inline constexpr size_t kExactStretch = 588;

/// Adds noise of triangular density between -1 and +1 step of 16 bits: the sum of two uniform ones,
/// which makes the error's mean and power independent of the music. Digital silence, and what else
/// fits 16 bits for `kExactStretch` frames or longer, is left exact. The noise of a frame depends
/// on the seed and the frame's number alone, so that an album renders to the same image every time.
class ChannelDither {
 public:
  explicit ChannelDither(uint64_t seed) : m_seed(seed) {}

  /// Goes on with the channel's next `count` samples, full scale 1.0, at `samples`. Behind them in
  /// the channel's order, and so before `samples` in memory, must lie those that were `undecided`.
  void go(double* samples, size_t count);
  /// How many of the samples so far, the last ones, wait for what follows: they fit 16 bits, but
  /// for less than `kExactStretch` frames.
  size_t undecided() const { return m_fitting < kExactStretch ? m_fitting : 0; }
  /// Decides those when nothing follows; `end` is behind the last of them.
  void end(double* end);
  /// Whether any sample has got noise.
  bool hasAdded() const { return m_has_added; }

 private:
  void goOneByOne(double* samples, size_t count);
  void add(double* samples, size_t count, uint64_t frame);

  uint64_t m_seed;
  uint64_t m_frame = 0;  ///< of the next sample
  size_t m_fitting = 0;  ///< samples in a row that fit 16 bits, up to the last one
  bool m_has_added = false;
};

}  // namespace velmor::render
