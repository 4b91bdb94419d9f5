#include "check/portable/joined_image.h"

#include <algorithm>

#include "check/portable/image_names.h"
#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

/// Walks through the files from index to index, and notes where each falls in the one image.
class Joiner {
 public:
  Joiner(const Disc& disc, disc::PortableDisc& made) : m_disc(disc), m_made(made) {}

  std::vector<ImagePiece> run() {
    int64_t postgap = 0;
    for (disc::PlainTrack& track : m_made.tracks) {
      const disc::PlainIndex first = track.indices.front();
      copyTo(first.file, first.sector);
      addSilence(postgap);
      const int64_t pause = m_out;
      addSilence(track.pregap);
      for (disc::PlainIndex& index : track.indices) {
        copyTo(index.file, index.sector);
        index.sector = m_out;
        index.file = 0;
      }
      if (track.pregap > 0) beginPause(track, pause);
      postgap = track.postgap;
      track.pregap = track.postgap = 0;
    }
    copyTo(m_file, m_disc.images[m_file].sectors());
    addSilence(postgap);
    return std::move(m_pieces);
  }

 private:
  static void beginPause(disc::PlainTrack& track, int64_t sector) {
    if (track.indices.front().number == 0)
      track.indices.front().sector = sector;
    else
      track.indices.insert(track.indices.begin(), {0, sector, 0});
  }

  void copyTo(size_t file, int64_t sector) {
    if (!m_begun) {
      m_file = file;
      m_begun = true;
    }
    while (m_file < file) {
      copy(m_disc.images[m_file].sectors());
      ++m_file;
      while (m_file < file && !m_used[m_file]) ++m_file;
      m_sector = 0;
    }
    copy(sector);
  }

  void copy(int64_t to) {
    if (to <= m_sector) return;
    m_pieces.push_back({m_file, m_sector, to - m_sector});
    m_out += to - m_sector;
    m_sector = to;
  }

  void addSilence(int64_t sectors) {
    if (sectors <= 0) return;
    m_pieces.push_back({0, 0, sectors, true});
    m_out += sectors;
  }

  const Disc& m_disc;
  disc::PortableDisc& m_made;
  std::vector<bool> m_used = filesInUse(m_disc.sheet);
  std::vector<ImagePiece> m_pieces;
  bool m_begun = false;
  size_t m_file = 0;
  int64_t m_sector = 0, m_out = 0;
};

/// Fills `samples` with sectors of the piece from its sector `first` on.
void readPiece(const Report& report, const ImagePiece& piece, int64_t first, int64_t sectors,
               std::vector<int16_t>& samples) {
  const auto frames = static_cast<size_t>(sectors * disc::kFramesPerSector);
  samples.assign(frames * 2, 0);
  if (piece.silence) return;
  const ImageFile& image = report.disc.images[piece.file];
  const int64_t from = (piece.first + first) * disc::kFramesPerSector;
  const int64_t there = image.dataBytes() / disc::kBytesPerFrame - from;
  const auto wanted = std::min(frames, static_cast<size_t>(std::max<int64_t>(there, 0)));
  if (image.readFrames(from, samples.data(), frames) < wanted)
    throw Failure(disc::inQuotes(image.path().string()) +
                  " cannot be read to its end; copy it to another disk");
}

}  // namespace

std::vector<ImagePiece> joinFiles(const Report& report, const std::filesystem::path& image,
                                  const std::filesystem::path& sheet, disc::PortableDisc& disc) {
  for (const ImageFile& file : report.disc.images)
    if (!file.readable())
      throw Failure("the files cannot be joined: " + disc::inQuotes(file.path().string()) +
                    " is not 16-bit 44100 Hz stereo audio; convert it to that as WAVE first");
  for (const disc::PlainTrack& track : disc.tracks)
    if (track.mode != "AUDIO")
      throw Failure("the files cannot be joined: track " + std::to_string(track.number) +
                    " holds data, not audio; leave out --join");
  std::vector<ImagePiece> pieces = Joiner(report.disc, disc).run();
  const size_t files = disc.files.size();
  const std::string name = nameFromFolder(image, sheet.parent_path());
  if (const auto of_old_image = nameForLibcdio(sheet, disc.files.front().name))
    std::erase(disc.changes, *of_old_image);
  disc.files = {{name, "BINARY"}};
  if (const auto advice = nameForLibcdio(sheet, name)) disc.changes.push_back(*advice);
  disc.changes.push_back(disc::printable(
      disc::counted(static_cast<int64_t>(files), "file") + (files == 1 ? " becomes " : " become ") +
      disc::inQuotes(name) + ", with the silence of PREGAP and POSTGAP inside."));
  return pieces;
}

void writePieces(const Report& report, const std::vector<ImagePiece>& pieces,
                 const std::function<void(std::string_view)>& write, const JoinProgress& progress) {
  constexpr int64_t kSectorsAtOnce = 100;
  std::vector<int16_t> samples;
  int64_t done_before = 0, all = 0;
  for (const ImagePiece& piece : pieces) all += piece.sectors;
  for (const ImagePiece& piece : pieces) {
    for (int64_t done = 0; done < piece.sectors; done += kSectorsAtOnce) {
      const int64_t sectors = std::min(kSectorsAtOnce, piece.sectors - done);
      readPiece(report, piece, done, sectors, samples);
      write({reinterpret_cast<const char*>(samples.data()), samples.size() * sizeof(int16_t)});
      progress(done_before + done + sectors, all);
    }
    done_before += piece.sectors;
  }
}

}  // namespace velmor::check
