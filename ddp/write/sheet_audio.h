// The audio of a set, read from the images of a sheet.
#pragma once

#include <cstddef>
#include <vector>

#include "check/image/image_file.h"
#include "ddp/write/sheet_layout.h"
#include "disc/failure.h"

namespace velmor::ddp {

/// Delivers the pieces one after the other. One thread.
class SheetAudio {
 public:
  /// Both must outlive the object. Every piece that is no silence lies in a readable image.
  SheetAudio(const std::vector<AudioPiece>& pieces, const std::vector<check::ImageFile>& images)
      : m_pieces(pieces), m_images(images) {}

  /// Fills `bytes` with the next `count` of them, whole sectors; the last sector of an image is
  /// filled up with zeros. Throws `Failure` when an image cannot be read any more.
  void read(char* bytes, size_t count);

 private:
  void readImage(const AudioPiece& piece, char* bytes, int64_t sectors) const;

  const std::vector<AudioPiece>& m_pieces;
  const std::vector<check::ImageFile>& m_images;
  size_t m_piece = 0;
  int64_t m_done = 0;  ///< sectors of that piece
};

}  // namespace velmor::ddp
