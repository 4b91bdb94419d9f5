// The album as a workstation hands it to the module: block after block, all of one length.
#pragma once

#include <cstddef>
#include <vector>

#include "host/render/module/read_ahead.h"

namespace velmor::render {

class AlbumBlocks {
 public:
  /// `audio` must outlive the object; `block` in frames, at least 1.
  AlbumBlocks(ReadAhead& audio, int block);

  /// Goes to the next block and answers its frames: `block`, fewer in the last one, 0 behind it.
  /// Throws what the reading thread ran into.
  int next();
  /// The two channels of the block, full scale 1.0.
  double** channels() { return m_channels; }

 private:
  ReadAhead& m_audio;
  AudioPiece m_piece;
  size_t m_used = 0;  ///< frames of `m_piece` that were in blocks
  std::vector<double> m_left, m_right;
  double* m_channels[2];
};

}  // namespace velmor::render
