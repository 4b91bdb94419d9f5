// A stretch of audio on its way from the thread that reads to the one that renders.
#pragma once

#include <cstddef>
#include <vector>

namespace velmor::render {

/// Frames of one input: decoded, or plain samples still packed as in the file. Packed ones are
/// decoded where they are used: carried from one processor core to another they are a third as
/// much, or less.
class AudioStretch {
 public:
  size_t frames() const { return m_frames; }
  bool isPacked() const { return m_sample_bytes != 0; }
  /// Both channels of decoded frames, `frames()` samples each, full scale 1.0.
  const std::vector<double>& left() const { return m_left; }
  const std::vector<double>& right() const { return m_right; }

  /// Decodes or copies `count` frames from frame `at` on.
  void copy(size_t at, size_t count, double* left, double* right) const;

  /// Becomes what `fill(left, right, most)` decodes: it answers the number of frames.
  template <class Fill>
  void fillDecoded(size_t most, Fill fill) {
    m_sample_bytes = 0;
    m_left.resize(most);
    m_right.resize(most);
    m_frames = fill(m_left.data(), m_right.data(), most);
    m_left.resize(m_frames);
    m_right.resize(m_frames);
  }
  /// Becomes what `fill(bytes, most)` packs, of `channels` (1 or 2) with little-endian integers of
  /// `sample_bytes` (2 to 4); it answers the number of frames.
  template <class Fill>
  void fillPacked(size_t sample_bytes, size_t channels, size_t most, Fill fill) {
    m_frames = 0;
    m_sample_bytes = sample_bytes;
    m_channels = channels;
    makeRoomForPacked(most);
    m_frames = fill(m_bytes.data(), most);
  }

 private:
  void makeRoomForPacked(size_t frames);

  size_t m_frames = 0;
  size_t m_sample_bytes = 0;  ///< 0: decoded
  size_t m_channels = 0;      ///< of packed frames
  std::vector<std::byte> m_bytes;
  std::vector<double> m_left, m_right;
};

}  // namespace velmor::render
