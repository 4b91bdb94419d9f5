#include "check/image/audio_map.h"

#include <algorithm>
#include <cassert>

#include "check/samples/sample_loops.h"
#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

/// Sectors read at a time: about 128 KiB, which stays in the second-level cache.
constexpr size_t kBatch = 56;
constexpr auto kSectorFrames = static_cast<size_t>(disc::kFramesPerSector);

}  // namespace

class AudioMap::Scan {
 public:
  explicit Scan(AudioMap& map) : m_map(map) {}

  void run(const ImageFile& image, const Progress& progress) {
    const auto sectors = static_cast<size_t>(std::min(image.sectors(), kMostSectors));
    m_map.m_sectors.reserve(sectors);
    while (m_map.m_sectors.size() < sectors) {
      const int64_t first_frame = m_map.sectors() * disc::kFramesPerSector;
      const size_t frames = image.readFrames(first_frame, m_batch, kBatch * kSectorFrames);
      if (frames == 0) break;
      readBatch(frames, first_frame);
      if (progress) progress(m_map.sectors() * disc::kBytesPerSector);
      if (frames < kBatch * kSectorFrames) break;
    }
    m_map.m_clipped = m_clips.finish();
  }

 private:
  void readBatch(size_t frames, int64_t first_frame) {
    const size_t sectors = (frames + kSectorFrames - 1) / kSectorFrames;
    // A last sector that is not whole counts as if zeros followed, which is what a burner writes.
    std::fill(m_batch + 2 * frames, m_batch + sectors * kSectorSamples, int16_t{0});
    m_loud.clear();
    for (size_t s = 0; s < sectors; ++s) {
      const SectorLook look = m_loops.look(m_batch + s * kSectorSamples);
      const int peak = std::max<int>(look.high, -look.low);
      m_map.m_sectors.push_back({static_cast<uint16_t>(peak), look.channels});
      if (look.turn_blocks != 0) m_loud.push_back({s, look.turn_blocks});
    }
    m_clips.readBatch(m_batch, sectors, first_frame, m_loud);
  }

  AudioMap& m_map;
  const SampleLoops& m_loops = sampleLoops();
  ClipFinder m_clips{m_loops};
  std::vector<int16_t> m_samples =
      std::vector<int16_t>(kTurnsLookBack + kBatch * kSectorSamples + kTurnsLookAhead);
  int16_t* const m_batch = m_samples.data() + kTurnsLookBack;
  std::vector<LoudSector> m_loud;
};

AudioMap AudioMap::scan(const ImageFile& image, const Progress& progress) {
  assert(image.readable());
  AudioMap map;
  Scan(map).run(image, progress);
  map.m_broke_off = map.sectors() < bytesToScan(image) / disc::kBytesPerSector;
  return map;
}

int64_t AudioMap::bytesToScan(const ImageFile& image) {
  return std::min(image.dataBytes(), kMostSectors * disc::kBytesPerSector);
}

int64_t AudioMap::firstSound(int64_t sector, int64_t end) const {
  assert(sector <= end);
  while (sector < end && silent(sector)) ++sector;
  return sector;
}

int64_t AudioMap::silentBefore(int64_t end, int64_t begin) const {
  assert(begin <= end);
  int64_t count = 0;
  while (end - count > begin && silent(end - count - 1)) ++count;
  return count;
}

}  // namespace velmor::check
