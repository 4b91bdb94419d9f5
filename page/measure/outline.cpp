#include "page/measure/outline.h"

#include <algorithm>
#include <cstdlib>

#include "check/samples/sample_loops.h"
#include "disc/units/disc_units.h"
#include "page/measure/disc_audio.h"

namespace velmor::page {

namespace {

constexpr int64_t kSectorsAtOnce = 64;
constexpr int kSamples = disc::kFramesPerSector * 2;
constexpr double kSampleScale = 32768.0;

/// Sums of both channels; a sector's fit easily.
struct Sums {
  int32_t left = 0, right = 0;
};

Sums sumsOf(const int16_t* samples) {
  Sums sums;
  for (int i = 0; i < kSamples; i += 2) {
    sums.left += samples[i];
    sums.right += samples[i + 1];
  }
  return sums;
}

bool silentFrame(const int16_t* samples, int64_t frame) {
  return samples[2 * frame] == 0 && samples[2 * frame + 1] == 0;
}

/// Follows the tracks through the disc.
class Outliner {
 public:
  explicit Outliner(const PageDisc& disc) : m_disc(disc) {
    m_outline.begin = disc.begin;
    m_outline.tracks.resize(disc.tracks.size());
  }

  Outline run(const SectorsDone& progress) {
    DiscAudio audio(m_disc);
    std::vector<int16_t> samples(static_cast<size_t>(kSectorsAtOnce * kSamples));
    const int64_t end = std::min(m_disc.end, m_disc.begin + kMostSectors);
    m_outline.swings.reserve(static_cast<size_t>(std::max<int64_t>(end - m_disc.begin, 0)));
    for (int64_t at = m_disc.begin; at < end; at += kSectorsAtOnce) {
      const int64_t now = std::min(kSectorsAtOnce, end - at);
      audio.read(at, now, samples.data());
      for (int64_t s = 0; s < now; ++s) takeSector(at + s, samples.data() + s * kSamples);
      progress(now);
    }
    leaveTrack();
    m_outline.broke_off = audio.brokeOff();
    return std::move(m_outline);
  }

 private:
  void takeSector(int64_t sector, const int16_t* samples) {
    const check::SectorLook e = m_loops.look(samples);
    m_outline.swings.push_back({e.low, e.high});
    findTrack(sector);
    if (!m_now) return;
    TrackOutline& track = *m_now;
    if (e.low != 0 || e.high != 0) takeSound(samples, e, track);
    track.frames += disc::kFramesPerSector;
  }

  void takeSound(const int16_t* samples, const check::SectorLook& e, TrackOutline& track) {
    int64_t first = 0, last = disc::kFramesPerSector - 1;
    while (silentFrame(samples, first)) ++first;
    while (silentFrame(samples, last)) --last;
    if (track.silent()) track.silent_at_start = track.frames + first;
    m_sounds_to = track.frames + last + 1;
    track.peak = std::max({track.peak, -int{e.low}, int{e.high}});
    const Sums sums = sumsOf(samples);
    m_left += sums.left;
    m_right += sums.right;
  }

  /// Goes on to the track in which `sector` lies.
  void findTrack(int64_t sector) {
    if (m_now && sector < m_disc.tracks[m_track].place->end) return;
    leaveTrack();
    for (size_t t = 0; t < m_disc.tracks.size(); ++t) {
      const auto& place = m_disc.tracks[t].place;
      if (!place || place->begin != sector || !isMeasured(m_disc, t)) continue;
      m_track = t;
      m_now.emplace();
    }
  }

  void leaveTrack() {
    if (!m_now) return;
    TrackOutline& track = *m_now;
    if (track.silent()) track.silent_at_start = track.frames;
    track.silent_at_end = track.frames - m_sounds_to;
    const double all = static_cast<double>(std::max<int64_t>(track.frames, 1)) * kSampleScale;
    track.offset_left = static_cast<double>(m_left) / all;
    track.offset_right = static_cast<double>(m_right) / all;
    m_outline.tracks[m_track] = track;
    m_now.reset();
    m_left = m_right = m_sounds_to = 0;
  }

  const PageDisc& m_disc;
  const check::SampleLoops& m_loops = check::sampleLoops();
  Outline m_outline;
  size_t m_track = 0;
  std::optional<TrackOutline> m_now;
  int64_t m_left = 0, m_right = 0, m_sounds_to = 0;
};

}  // namespace

bool isMeasured(const PageDisc& disc, size_t track) {
  const PageTrack& t = disc.tracks[track];
  if (!t.is_audio || !t.place || t.place->sectors() <= 0) return false;
  if (t.place->end > disc.begin + kMostSectors) return false;
  // Of tracks that lie over one another the earlier one counts.
  for (size_t before = 0; before < track; ++before)
    if (disc.tracks[before].place && disc.tracks[before].place->end > t.place->begin) return false;
  for (const AudioRun& run : disc.runs)
    if (run.at <= t.place->begin && t.place->begin < run.at + run.sectors) return true;
  return false;
}

Outline outlineOf(const PageDisc& disc, const SectorsDone& progress) {
  return Outliner(disc).run(progress);
}

}  // namespace velmor::page
