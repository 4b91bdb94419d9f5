#include "host/recording/burn/disc_comparison.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <optional>
#include <vector>

#include "disc/failure.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "host/recording/session/prepared_tracks.h"

namespace velmor::recording {
namespace {

constexpr int kChunkSectors = 16;
constexpr int kMaxOffset = 5 * disc::kFramesPerSector;  // frames
constexpr int kOffsetChunks = 64;     // chunks of music that are looked at for the offset
constexpr int kUnreadableChunks = 4;  // after so many the drive cannot read audio at all

/// The disc's audio, addressed by frames instead of sectors.
class DiscReader {
 public:
  DiscReader(Recorder& recorder, int64_t sectors) : m_recorder(recorder), m_sectors(sectors) {}

  /// Frames of the disc that exist at all.
  int64_t frames() const { return m_sectors * disc::kFramesPerSector; }

  /// Frames `first` to `last` (exclusive), all of which exist; null when they cannot be read. Valid
  /// until the next call.
  const unsigned char* read(int64_t first, int64_t last) {
    const int64_t sector = first / disc::kFramesPerSector;
    const int64_t end = (last + disc::kFramesPerSector - 1) / disc::kFramesPerSector;
    m_audio.resize(static_cast<size_t>((end - sector) * disc::kBytesPerSector));
    if (!m_recorder.readAudio(sector, static_cast<int>(end - sector), m_audio.data()))
      return nullptr;
    return m_audio.data() + (first - sector * disc::kFramesPerSector) * disc::kBytesPerFrame;
  }

 private:
  Recorder& m_recorder;
  int64_t m_sectors;
  std::vector<unsigned char> m_audio;
};

/// The image in chunks, from its beginning.
class ImageReader {
 public:
  explicit ImageReader(const SessionPlan& plan) : m_plan(plan), m_feed(plan, nullptr) {
    restartProducers(plan);
  }

  /// False at the end.
  bool nextChunk() {
    m_first = m_feed.delivered();
    m_audio.clear();
    while (m_feed.delivered() < std::min(m_first + kChunkSectors, m_plan.sectors)) {
      const auto track = static_cast<size_t>(m_plan.trackAt(m_feed.delivered()));
      m_audio.resize(m_audio.size() + disc::kBytesPerSector);
      if (!m_feed.next(track, m_audio.data() + m_audio.size() - disc::kBytesPerSector))
        throw Failure("the disc could not be compared: " + m_feed.failure());
    }
    return !m_audio.empty();
  }

  int64_t firstFrame() const { return m_first * disc::kFramesPerSector; }
  int64_t frames() const { return static_cast<int64_t>(m_audio.size()) / disc::kBytesPerFrame; }
  int64_t sectorsDone() const { return m_feed.delivered(); }
  const unsigned char* audio() const { return m_audio.data(); }

  /// Whether the chunk is silence, or holds one value: it says nothing about the offset, since it
  /// looks the same wherever it is read.
  bool isStill() const {
    return std::memcmp(m_audio.data(), m_audio.data() + disc::kBytesPerFrame,
                       m_audio.size() - disc::kBytesPerFrame) == 0;
  }

 private:
  const SessionPlan& m_plan;
  SectorFeed m_feed;
  int64_t m_first = 0;
  std::vector<unsigned char> m_audio;
};

/// Keeps those offsets (disc frame minus image frame) under which the chunk is found on the disc;
/// an offset that would take the chunk beyond the disc's ends cannot be judged and stays. False
/// when the disc cannot be read there.
bool narrow(std::vector<int>& offsets, const ImageReader& image, DiscReader& disc) {
  const int64_t from = std::max<int64_t>(image.firstFrame() - kMaxOffset, 0);
  const int64_t to = std::min(image.firstFrame() + image.frames() + kMaxOffset, disc.frames());
  const unsigned char* audio = disc.read(from, to);
  if (audio == nullptr) return false;
  const auto differs = [&](int offset) {
    const int64_t first = image.firstFrame() + offset;
    if (first < from || first + image.frames() > to) return false;
    return std::memcmp(audio + (first - from) * disc::kBytesPerFrame, image.audio(),
                       static_cast<size_t>(image.frames() * disc::kBytesPerFrame)) != 0;
  };
  offsets.erase(std::remove_if(offsets.begin(), offsets.end(), differs), offsets.end());
  return true;
}

struct Offset {
  int frames = 0;
  int chunks = 0;      // that were read to find it
  int unreadable = 0;  // chunks
};

Offset findOffset(const SessionPlan& plan, DiscReader& disc) {
  std::vector<int> offsets(2 * kMaxOffset + 1);
  std::iota(offsets.begin(), offsets.end(), -kMaxOffset);
  ImageReader image(plan);
  Offset found;
  while (found.chunks < kOffsetChunks && found.unreadable < kUnreadableChunks &&
         offsets.size() > 1 && image.nextChunk()) {
    if (image.isStill()) continue;
    ++(narrow(offsets, image, disc) ? found.chunks : found.unreadable);
  }
  const auto nearer = [](int a, int b) { return std::abs(a) < std::abs(b); };
  const auto nearest = std::min_element(offsets.begin(), offsets.end(), nearer);
  if (nearest != offsets.end()) found.frames = *nearest;
  return found;
}

/// What the comparison from end to end finds.
struct Differences {
  int64_t differing = 0;  // sectors
  int64_t first = -1;     // the first of them
  bool stopped = false;
  std::optional<int64_t> unreadable;  // sector
};

/// The first of the sectors of frames `from` to `to` that cannot be read. Where each can be read by
/// itself, although reading them together has failed, the first of all.
int64_t unreadableSector(DiscReader& disc, int64_t from, int64_t to) {
  const int64_t first = from / disc::kFramesPerSector;
  for (int64_t sector = first; sector * disc::kFramesPerSector < to; ++sector)
    if (disc.read(sector * disc::kFramesPerSector, (sector + 1) * disc::kFramesPerSector) ==
        nullptr)
      return sector;
  return first;
}

/// Whether the track's producer takes the sector for its own. Producers judge whole sectors, so
/// they can only be asked where the drive reads without an offset.
bool producersAgree(const SessionPlan& plan, int64_t sector, const unsigned char* audio) {
  const AudioSource& source = plan.sourceAt(sector);
  return sector < source.begin + source.pregap
             ? source.producer->VerifyPreGap(audio, disc::kBytesPerSector)
             : source.producer->VerifyData(audio, disc::kBytesPerSector);
}

void compareChunk(const SessionPlan& plan, const ImageReader& image, DiscReader& disc, int offset,
                  Differences& differences) {
  const int64_t from = std::max<int64_t>(image.firstFrame() + offset, 0);
  const int64_t to = std::min(image.firstFrame() + image.frames() + offset, disc.frames());
  if (from >= to) return;
  const unsigned char* audio = disc.read(from, to);
  if (audio == nullptr) {
    differences.unreadable = unreadableSector(disc, from, to);
    return;
  }
  for (int64_t frame = image.firstFrame(); frame < image.firstFrame() + image.frames();
       frame += disc::kFramesPerSector) {
    const int64_t first = std::max(frame + offset, from);
    const int64_t last = std::min(frame + disc::kFramesPerSector + offset, to);
    if (first >= last) continue;
    const unsigned char* read = audio + (first - from) * disc::kBytesPerFrame;
    const unsigned char* wanted =
        image.audio() + (first - offset - image.firstFrame()) * disc::kBytesPerFrame;
    const int64_t sector = frame / disc::kFramesPerSector;
    const bool equal =
        std::memcmp(read, wanted, static_cast<size_t>((last - first) * disc::kBytesPerFrame)) ==
            0 &&
        (offset != 0 || producersAgree(plan, sector, read));
    if (equal) continue;
    if (differences.differing++ == 0) differences.first = sector;
  }
}

Differences compareAll(const SessionPlan& plan, DiscReader& disc, int offset,
                       const ComparisonProgress& progress) {
  Differences differences;
  ImageReader image(plan);
  while (!differences.unreadable && image.nextChunk()) {
    compareChunk(plan, image, disc, offset, differences);
    if (progress(image.sectorsDone())) continue;
    differences.stopped = true;
    break;
  }
  return differences;
}

std::string place(const SessionPlan& plan, int64_t sector) {
  return disc::msfText(sector) + " (track " + std::to_string(plan.trackAt(sector) + 1) + ")";
}

}  // namespace

Comparison compareDisc(Recorder& recorder, const SessionPlan& plan,
                       const ComparisonProgress& progress) {
  using Verdict = Comparison::Verdict;
  constexpr const char* kUnread =
      "the disc was not compared with the image: the drive does not read it back; take it out, put "
      "it in again and listen to it, or read it with another drive";
  try {
    DiscReader disc(recorder, plan.sectors);
    const Offset offset = findOffset(plan, disc);
    if (offset.chunks == 0 && offset.unreadable > 0) return {Verdict::kUndecided, kUnread};
    const Differences differences = compareAll(plan, disc, offset.frames, progress);
    if (differences.differing > 0)
      return {Verdict::kDifferent,
              "the disc differs from the image in " + std::to_string(differences.differing) +
                  (differences.differing == 1 ? " sector, at " : " sectors, first at ") +
                  place(plan, differences.first)};
    if (differences.unreadable == 0 && offset.chunks == 0) return {Verdict::kUndecided, kUnread};
    if (differences.unreadable)
      return {Verdict::kDifferent,
              "the disc cannot be read at " + place(plan, *differences.unreadable)};
    if (differences.stopped)
      return {Verdict::kUndecided,
              "the comparison was stopped; as far as it went the disc equals the image"};
    if (offset.frames == 0) return {Verdict::kEqual, "the disc equals the image"};
    return {Verdict::kEqual, "the disc equals the image; the drive reads with an offset of " +
                                 std::to_string(offset.frames) +
                                 " frames, so that many at one end could not be compared"};
  } catch (const Failure& refusal) {
    return {Verdict::kUndecided, refusal.what()};
  }
}

}  // namespace velmor::recording
