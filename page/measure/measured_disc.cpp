#include "page/measure/measured_disc.h"

#include <algorithm>
#include <deque>

#include "disc/units/disc_units.h"
#include "page/measure/image_digests.h"
#include "page/measure/jobs.h"

namespace velmor::page {

namespace {

/// What the loudness and the true peak of a byte take, beside the other ways of looking at it.
constexpr int64_t kLoudnessWork = 2;
constexpr int64_t kTruePeakWork = 6;

/// Sectors whose true peak is one job. It takes twice as long as all else together, so that
/// it is what the processors share at the end, on a disc of one track as on any.
constexpr int64_t kPeakPiece = int64_t{120} * disc::kSectorsPerSecond;

class Measuring {
 public:
  explicit Measuring(const PageDisc& disc) : m_disc(disc), m_meters(disc.tracks.size()) {
    m_made.digests.resize(disc.images.size());
    m_made.loudness.resize(disc.tracks.size());
  }

  MeasuredDisc run(const MeasureProgress& progress) {
    // The longest jobs first, so that no processor waits for another one at the end.
    const std::vector<size_t> tracks = tracksByLength();
    for (const size_t track : tracks) addLoudness(track);
    addJob(sectorsOf({m_disc.begin, m_disc.end}),
           [this] { m_made.outline = outlineOf(m_disc, sectorsDone(1)); });
    for (size_t i = 0; i < m_disc.images.size(); ++i) addImage(i);
    for (const size_t track : tracks) addTruePeak(track);
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

  void addLoudness(size_t track) {
    addJob(kLoudnessWork * sectorsOf(*m_disc.tracks[track].place), [this, track] {
      m_meters[track].emplace(measureLoudness(m_disc, track, sectorsDone(kLoudnessWork)));
    });
  }

  void addTruePeak(size_t track) {
    const Stretch place = *m_disc.tracks[track].place;
    for (int64_t at = place.begin; at < place.end; at += kPeakPiece) {
      const Stretch piece{at, std::min(at + kPeakPiece, place.end)};
      m_peaks.push_back({track, 0.0});
      double& peak = m_peaks.back().value;
      addJob(kTruePeakWork * sectorsOf(piece), [this, track, piece, &peak] {
        peak = measureTruePeak(m_disc, track, piece, sectorsDone(kTruePeakWork));
      });
    }
  }

  void addImage(size_t i) {
    addJob(m_disc.images[i].bytes, [this, i] {
      m_made.digests[i] =
          digestsOf(m_disc.images[i], [this](int64_t bytes) { m_progress.add(bytes); });
    });
  }

  void takeLoudness() {
    std::vector<const LoudnessMeter*> all;
    for (size_t t = 0; t < m_meters.size(); ++t) {
      if (!m_meters[t]) continue;
      all.push_back(&*m_meters[t]);
      m_made.loudness[t] = Loudness{LoudnessMeter::lufsOf({all.back()}), 0.0};
    }
    if (all.empty()) return;
    m_made.whole = Loudness{LoudnessMeter::lufsOf(all), 0.0};
    for (const PiecePeak& piece : m_peaks)
      for (Loudness* loudness : {&*m_made.loudness[piece.track], &*m_made.whole})
        loudness->true_peak = std::max(loudness->true_peak, piece.value);
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

  /// The true peak of a piece of a track.
  struct PiecePeak {
    size_t track;
    double value;
  };

  const PageDisc& m_disc;
  MeasuredDisc m_made;
  std::vector<std::optional<LoudnessMeter>> m_meters;
  std::deque<PiecePeak> m_peaks;  ///< each written by a job of its own
  std::vector<Job> m_jobs;
  SharedProgress m_progress;
  int64_t m_all = 0;
};

}  // namespace

MeasuredDisc measure(const PageDisc& disc, const MeasureProgress& progress) {
  return Measuring(disc).run(progress);
}

}  // namespace velmor::page
