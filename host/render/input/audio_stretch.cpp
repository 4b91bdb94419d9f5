#include "host/render/input/audio_stretch.h"

#include <algorithm>
#include <cassert>

#include "host/render/input/formats/plain_pcm.h"

namespace velmor::render {

void AudioStretch::makeRoomForPacked(size_t frames) {
  m_bytes.resize(std::max(m_bytes.size(), frames * m_channels * m_sample_bytes + kPlainSlack));
}

void AudioStretch::copy(size_t at, size_t count, double* left, double* right) const {
  assert(at <= m_frames && count <= m_frames - at);
  if (!isPacked()) {
    std::copy_n(m_left.data() + at, count, left);
    std::copy_n(m_right.data() + at, count, right);
    return;
  }
  const std::byte* from = m_bytes.data() + at * m_channels * m_sample_bytes;
  decodePlainFrames(from, m_sample_bytes, m_channels, left, right, count);
  if (m_channels == 1) std::copy_n(left, count, right);
}

}  // namespace velmor::render
