#include "ddp/write/sheet_layout.h"

#include <cassert>
#include <optional>

#include "disc/ddp/sheet_flags.h"

namespace velmor::ddp {

namespace {

class Layouter {
 public:
  explicit Layouter(const check::Disc& disc)
      : m_disc(disc), m_used(check::filesInUse(disc.sheet)) {}

  SheetLayout run() {
    const disc::Sheet& sheet = m_disc.sheet;
    if (sheet.catalog) m_made.set.catalogue = sheet.catalog->bytes;
    for (const disc::Track& track : sheet.tracks) addTrack(track);
    copyTo(m_disc.images.size(), 0);
    addSilence(m_postgap);
    m_made.set.sectors = m_sectors;
    return std::move(m_made);
  }

 private:
  void addTrack(const disc::Track& track) {
    const disc::Index& first = track.indices.front();
    copyTo(first.file, first.time.sectors());
    addSilence(m_postgap);
    SetTrack made;
    made.flags = flagsOf(track);
    if (track.isrc) made.isrc = track.isrc->bytes;
    const int64_t pregap = addPregap(track);
    if (pregap > 0) made.indices.push_back({0, m_sectors - pregap});
    for (const disc::Index& index : track.indices) {
      copyTo(index.file, index.time.sectors());
      if (index.number > 0 || pregap == 0) made.indices.push_back({index.number, m_sectors});
    }
    m_postgap = track.postgap ? track.postgap->sectors() : 0;
    m_made.set.tracks.push_back(std::move(made));
  }

  /// Silence before the first index of a track; returns the sectors of track 1's pregap too, where
  /// no INDEX 00 says where it begins.
  int64_t addPregap(const disc::Track& track) {
    int64_t pregap = track.pregap ? track.pregap->sectors() : 0;
    const bool is_first = m_made.set.tracks.empty();
    if (is_first && !track.index(0) && pregap == 0) {
      // What the sheet leaves before track 1's start belongs to its pregap.
      m_made.pieces.insert(m_made.pieces.begin(), {AudioPiece::kSilence, 0, kShortestFirstPregap});
      m_sectors += kShortestFirstPregap;
      return m_sectors;
    }
    addSilence(pregap);
    return is_first && pregap > 0 ? m_sectors : pregap;
  }

  void addSilence(int64_t sectors) { addPiece({AudioPiece::kSilence, 0, sectors}); }

  void addPiece(const AudioPiece& piece) {
    if (piece.sectors <= 0) return;
    m_made.pieces.push_back(piece);
    m_sectors += piece.sectors;
  }

  /// Copies the images that are on the disc up to sector `sector` of image `file`.
  void copyTo(size_t file, int64_t sector) {
    for (; m_file < file; ++m_file, m_from = 0) {
      if (m_file < m_used.size() && m_used[m_file]) copyUpTo(m_disc.images[m_file].sectors());
    }
    if (file < m_disc.images.size()) copyUpTo(sector);
  }

  void copyUpTo(int64_t sector) {
    assert(sector >= m_from);
    addPiece({static_cast<int>(m_file), m_from, sector - m_from});
    m_from = sector;
  }

  const check::Disc& m_disc;
  const std::vector<bool> m_used;
  SheetLayout m_made;
  int64_t m_sectors = 0;
  size_t m_file = 0;   ///< image that is being copied
  int64_t m_from = 0;  ///< its next sector
  int64_t m_postgap = 0;
};

}  // namespace

SheetLayout layOutSheet(const check::Disc& disc) {
  return Layouter(disc).run();
}

}  // namespace velmor::ddp
