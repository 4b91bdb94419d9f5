#include "ddp/write/sheet_audio.h"

#include <algorithm>
#include <cassert>
#include <cstring>

#include "disc/text/phrases.h"
#include "disc/units/disc_units.h"

namespace velmor::ddp {

void SheetAudio::read(char* bytes, size_t count) {
  auto left = static_cast<int64_t>(count / disc::kBytesPerSector);
  while (left > 0) {
    assert(m_piece < m_pieces.size());
    const AudioPiece& piece = m_pieces[m_piece];
    const int64_t now = std::min(left, piece.sectors - m_done);
    if (piece.file == AudioPiece::kSilence)
      std::memset(bytes, 0, static_cast<size_t>(now) * disc::kBytesPerSector);
    else
      readImage(piece, bytes, now);
    bytes += now * disc::kBytesPerSector;
    left -= now;
    m_done += now;
    if (m_done < piece.sectors) continue;
    ++m_piece;
    m_done = 0;
  }
}

void SheetAudio::readImage(const AudioPiece& piece, char* bytes, int64_t sectors) const {
  const check::ImageFile& image = m_images[static_cast<size_t>(piece.file)];
  const int64_t first = (piece.first + m_done) * disc::kFramesPerSector;
  const int64_t wanted = sectors * disc::kFramesPerSector;
  const int64_t there = std::min(wanted, image.dataBytes() / disc::kBytesPerFrame - first);
  const size_t got = image.readFrames(first, reinterpret_cast<int16_t*>(bytes),
                                      static_cast<size_t>(std::max<int64_t>(there, 0)));
  if (static_cast<int64_t>(got) < there)
    throw Failure("reading " + disc::inQuotes(image.path().string()) + " broke off at sector " +
                  std::to_string(piece.first + m_done) +
                  ": it has become shorter, or its disk fails; copy it from its source again");
  std::memset(bytes + got * disc::kBytesPerFrame, 0,
              (static_cast<size_t>(wanted) - got) * disc::kBytesPerFrame);
}

}  // namespace velmor::ddp
