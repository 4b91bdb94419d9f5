#include "check/image/audio_map.h"

#include <algorithm>
#include <array>
#include <cassert>

#include "check/image/sector_extremes.h"
#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

/// Sectors read at a time: about 256 KiB, which stays in the second-level cache.
constexpr size_t kBatch = 112;
constexpr size_t kMostRuns = 100000;

}  // namespace

/// Follows both channels through the sectors that touch full scale.
class ClipFinder {
 public:
  explicit ClipFinder(AudioMap& map) : m_map(map) {}

  void readSector(const int16_t* samples, const Extremes& extremes, int64_t first_frame) {
    if ((extremes.high == INT16_MAX && holdsPair(samples, INT16_MAX)) ||
        (extremes.low == INT16_MIN && holdsPair(samples, INT16_MIN))) {
      readBlocks(samples, first_frame);
      return;
    }
    // Nothing runs but what comes from the sector before, or goes on into the next one.
    readFrame(samples, first_frame);
    closeAll();
    const int64_t last = disc::kFramesPerSector - 1;
    readFrame(samples + 2 * last, first_frame + last);
  }

  /// A sector or block below full scale, or the end: what was running has ended.
  void closeAll() {
    for (Running& r : m_runs) close(r);
  }

 private:
  struct Running {
    ClippedRun run;
    int16_t level = 0;
  };

  void readBlocks(const int16_t* samples, int64_t first_frame) {
    for (int64_t b = 0; b < disc::kFramesPerSector; b += kBlockFrames) {
      const int16_t* block = samples + 2 * b;
      if (!touchesFullScale(block)) {
        closeAll();
        continue;
      }
      for (int64_t i = 0; i < kBlockFrames; ++i) readFrame(block + 2 * i, first_frame + b + i);
    }
  }

  void readFrame(const int16_t* samples, int64_t frame) {
    readSample(m_runs[0], samples[0], frame);
    readSample(m_runs[1], samples[1], frame);
  }

  void readSample(Running& r, int16_t sample, int64_t frame) {
    const bool full = sample == INT16_MAX || sample == INT16_MIN;
    if (full && r.run.samples > 0 && sample == r.level) {
      ++r.run.samples;
      return;
    }
    close(r);
    if (full) r = {{frame, 1}, sample};
  }

  void close(Running& r) {
    if (r.run.samples >= kClippedRun) {
      if (m_map.m_runs.size() < kMostRuns)
        m_map.m_runs.push_back(r.run);
      else
        ++m_map.m_runs_left_out;
    }
    r.run.samples = 0;
  }

  AudioMap& m_map;
  std::array<Running, 2> m_runs{};
};

AudioMap AudioMap::scan(const ImageFile& image, const Progress& progress) {
  assert(image.readable());
  AudioMap map;
  ClipFinder clips(map);
  std::vector<int16_t> batch(kBatch * disc::kFramesPerSector * 2);
  const int64_t sectors = image.sectors();
  map.m_silent.reserve(static_cast<size_t>(sectors));
  while (map.sectors() < sectors) {
    const int64_t first = map.sectors();
    const size_t frames = image.readFrames(first * disc::kFramesPerSector, batch.data(),
                                           kBatch * disc::kFramesPerSector);
    if (frames == 0) break;
    // A last sector that is not whole counts as if zeros followed, which is what a burner writes.
    std::fill(batch.begin() + static_cast<std::ptrdiff_t>(frames * 2), batch.end(), int16_t{0});
    const size_t got = (frames + disc::kFramesPerSector - 1) / disc::kFramesPerSector;
    for (size_t s = 0; s < got; ++s) {
      const int16_t* samples = batch.data() + s * disc::kFramesPerSector * 2;
      const Extremes e = sectorExtremes(samples);
      map.m_silent.push_back(e.low == 0 && e.high == 0);
      if (e.low == INT16_MIN || e.high == INT16_MAX)
        clips.readSector(samples, e, (first + static_cast<int64_t>(s)) * disc::kFramesPerSector);
      else
        clips.closeAll();
    }
    if (progress) progress(map.sectors() * disc::kBytesPerSector);
    if (frames < kBatch * disc::kFramesPerSector) break;
  }
  clips.closeAll();
  // A long run of one channel ends after shorter ones of the other that began later.
  std::sort(map.m_runs.begin(), map.m_runs.end(),
            [](const ClippedRun& a, const ClippedRun& b) { return a.frame < b.frame; });
  map.m_broke_off = map.sectors() < image.dataBytes() / disc::kBytesPerSector;
  return map;
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
