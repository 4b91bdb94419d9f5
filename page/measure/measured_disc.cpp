#include "page/measure/measured_disc.h"

#include <algorithm>

#include "disc/units/disc_units.h"
#include "page/measure/image_digests.h"
#include "page/measure/jobs.h"

namespace velmor::page {

namespace {

/// What the loudness of a byte takes, beside the other ways of looking at it.
constexpr int64_t kLoudnessWork = 8;

class Measuring {
 public:
  explicit Measuring(const PageDisc& disc) : m_disc(disc), m_meters(disc.tracks.size()) {
    m_made.digests.resize(disc.images.size());
  }

  MeasuredDisc run(const MeasureProgress& progress) {
    // The longest pieces first, so that no processor waits for another one at the end.
    for (const size_t track : tracksByLength()) addTrack(track);
    addJob(sectorsOf({m_disc.begin, m_disc.end}),
           [this] { m_made.outline = outlineOf(m_disc, sectorsDone(1)); });
    for (size_t i = 0; i < m_disc.images.size(); ++i) addImage(i);
    runJobs(m_jobs, m_progress, [&] { progress(std::min(m_progress.done(), m_all), m_all); });
    takeLoudness();
    takeClipped();
    m_made.ids = discIds(m_disc);
    return std::move(m_made);
  }

 private:
  static int64_t sectorsOf(const Stretch& stretch) {
    return std::clamp<int64_t>(stretch.sectors(), 0, kMostSectors) * disc::kBytesPerSector;
  }

  SectorsDone sectorsDone(int64_t work) {
    return
        [this, work](int64_t sectors) { m_progress.add(sectors * disc::kBytesPerSector * work); };
  }

  void addJob(int64_t work, Job job) {
    m_all += work;
    m_jobs.push_back(std::move(job));
  }

  std::vector<size_t> tracksByLength() const {
    std::vector<size_t> tracks;
    for (size_t t = 0; t < m_disc.tracks.size(); ++t)
      if (isMeasured(m_disc, t)) tracks.push_back(t);
    std::stable_sort(tracks.begin(), tracks.end(), [this](size_t a, size_t b) {
      return m_disc.tracks[a].place->sectors() > m_disc.tracks[b].place->sectors();
    });
    return tracks;
  }

  void addTrack(size_t track) {
    addJob(kLoudnessWork * sectorsOf(*m_disc.tracks[track].place), [this, track] {
      m_meters[track].emplace(measureTrack(m_disc, track, sectorsDone(kLoudnessWork)));
    });
  }

  void addImage(size_t i) {
    addJob(m_disc.images[i].bytes, [this, i] {
      m_made.digests[i] =
          digestsOf(m_disc.images[i], [this](int64_t bytes) { m_progress.add(bytes); });
    });
  }

  void takeLoudness() {
    std::vector<const LoudnessMeter*> all;
    m_made.loudness.resize(m_meters.size());
    for (size_t t = 0; t < m_meters.size(); ++t) {
      if (!m_meters[t]) continue;
      all.push_back(&*m_meters[t]);
      m_made.loudness[t] = m_meters[t]->result();
    }
    if (!all.empty()) m_made.whole = LoudnessMeter::ofAll(all);
  }

  void takeClipped() {
    m_made.clipped.resize(m_disc.tracks.size());
    for (size_t t = 0; t < m_disc.tracks.size(); ++t) {
      const auto& place = m_disc.tracks[t].place;
      if (!place) continue;
      ClippedCount& count = m_made.clipped[t];
      for (const ClippedRun& run : m_disc.clipped) {
        if (run.sector < place->begin || run.sector >= place->end) continue;
        if (!count.first) count.first = run.sector;
        ++count.runs;
        count.longest = std::max(count.longest, run.samples);
      }
      count.more = m_disc.clipped_left_out && m_disc.clipped.back().sector < place->end;
    }
  }

  const PageDisc& m_disc;
  MeasuredDisc m_made;
  std::vector<std::optional<LoudnessMeter>> m_meters;
  std::vector<Job> m_jobs;
  SharedProgress m_progress;
  int64_t m_all = 0;
};

}  // namespace

MeasuredDisc measure(const PageDisc& disc, const MeasureProgress& progress) {
  return Measuring(disc).run(progress);
}

}  // namespace velmor::page
