#include "host/render/module/album_blocks.h"

#include <algorithm>
#include <cassert>

namespace velmor::render {

AlbumBlocks::AlbumBlocks(ReadAhead& audio, int block)
    : m_audio(audio),
      m_left(static_cast<size_t>(block)),
      m_right(static_cast<size_t>(block)),
      m_channels{m_left.data(), m_right.data()} {
  assert(block >= 1);
}

/// A block may hold the end of one input and the beginning of the next, since the module gets one
/// stream.
int AlbumBlocks::next() {
  size_t filled = 0;
  while (filled < m_left.size()) {
    if (m_used == m_piece.audio.frames()) {
      if (!m_audio.next(m_piece)) break;
      m_used = 0;
    }
    const size_t count = std::min(m_piece.audio.frames() - m_used, m_left.size() - filled);
    m_piece.audio.copy(m_used, count, m_left.data() + filled, m_right.data() + filled);
    m_used += count;
    filled += count;
  }
  return static_cast<int>(filled);
}

}  // namespace velmor::render
