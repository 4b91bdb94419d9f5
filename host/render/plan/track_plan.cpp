#include "host/render/plan/track_plan.h"

#include <algorithm>
#include <cassert>

#include "disc/units/disc_limits.h"
#include "disc/units/disc_units.h"
#include "host/render/album/mark_names.h"
#include "host/render/plan/track_pauses.h"

namespace velmor::render {

namespace {

int64_t frameAt(double seconds) {
  return static_cast<int64_t>(std::clamp(seconds * disc::kSampleRate + 0.5, -9.0e15, 9.0e15));
}

/// Counts what the module writes to the image: silence, padding and audio, in its order.
class Planner {
 public:
  explicit Planner(const SinkConfig& config) : m_config(config) {}

  void begin(const std::string& title) {
    m_plan.tracks.push_back({title, m_config.disc_leadin_ms / 1000.0, 0, 0, 0.0, 0.0});
    leadIn(m_config.disc_leadin_ms);
    m_plan.tracks.back().start_frame = position();
  }

  /// Writes the input's frames from `begin` up to `end`.
  void write(int64_t begin, int64_t end) {
    const int64_t frames = end - begin;
    if (frames <= 0) return;
    std::vector<FrameStretch>& written = m_plan.written;
    if (written.empty() || written.back().end != begin) written.push_back({begin, begin});
    written.back().end = end;
    m_frames += frames;
    m_bytes += frames * disc::kBytesPerFrame;
  }

  bool isLongEnough() const {
    return disc::secondsOf(m_frames) - m_plan.tracks.back().start >= disc::kShortestTrackSeconds;
  }

  void split(const std::string& title) {
    const int64_t end_of_audio = position();
    leadIn(m_config.track_leadin_ms);
    m_plan.tracks.push_back(
        {title, disc::secondsOf(m_frames), position(), 0, 0.0, 0.0, position() - end_of_audio});
  }

  /// The last track begins at `start` in the project, where the one before it ends.
  void beginSource(double start) {
    PlannedTrack& before = m_plan.tracks[m_plan.tracks.size() - 2];
    before.source_length = start - before.source_start;
    m_plan.tracks.back().source_start = start;
  }

  TrackPlan& plan() { return m_plan; }

  TrackPlan finish() {
    pad();
    m_plan.image_frames = position();
    m_plan.counted_frames = m_frames;
    if (m_config.track_mode != kTracksFromRegions) {
      m_plan.tracks.back().source_length = disc::secondsOf(m_frames) - m_plan.tracks.back().start;
    }
    for (size_t i = 0; i < m_plan.tracks.size(); ++i) {
      const bool last = i + 1 == m_plan.tracks.size();
      const int64_t end = last ? m_plan.image_frames : m_plan.tracks[i + 1].start_frame;
      m_plan.tracks[i].frames = end - m_plan.tracks[i].start_frame;
    }
    return std::move(m_plan);
  }

 private:
  /// Frames in the image so far.
  int64_t position() const { return m_bytes / disc::kBytesPerFrame; }

  void silence(int64_t bytes) {
    m_bytes += bytes;
    m_frames += bytes / disc::kBytesPerFrame;
  }

  void pad() {
    if (const int64_t beyond = m_bytes % disc::kBytesPerSector)
      silence(disc::kBytesPerSector - beyond);
  }

  void leadIn(int ms) {
    if (ms == 0) return;
    constexpr int64_t kMost = 2147483647 / disc::kBytesPerSector * disc::kBytesPerSector;
    const int64_t bytes = int64_t{ms} * disc::kSampleRate * disc::kBytesPerFrame / 1000;
    silence(bytes > 2147483647 ? kMost : bytes);
    pad();
  }

  const SinkConfig& m_config;
  TrackPlan m_plan;
  int64_t m_bytes = 0;
  int64_t m_frames = 0;  ///< as the module counts them
};

/// The name of track 1: the first marker that can name one, within four seconds of the start.
std::string firstTitle(const std::vector<Mark>& marks, bool hash_only) {
  for (const Mark& mark : marks) {
    if (mark.end || !namesTrack(mark.name, hash_only)) continue;
    return mark.start <= disc::kShortestTrackSeconds ? trackTitle(mark.name, hash_only) : "";
  }
  return "";
}

void planMarkers(Planner& planner, const SinkConfig& config, const std::vector<Mark>& marks,
                 int64_t frames) {
  const bool hash_only = config.hash_markers_only != 0;
  const std::string first = firstTitle(marks, hash_only);
  planner.begin(first);
  bool named = false;
  int64_t at = 0;
  std::vector<std::optional<size_t>>& track_of_mark = planner.plan().track_of_mark;
  for (size_t i = 0; i < marks.size(); ++i) {
    const Mark& mark = marks[i];
    if (mark.end || !namesTrack(mark.name, hash_only)) continue;
    if (!named && mark.start <= disc::kShortestTrackSeconds) track_of_mark[i] = 0;
    named = true;
    const int64_t frame = frameAt(mark.start);
    if (mark.start <= 0.0 || frame >= frames) continue;
    planner.write(at, frame);
    at = frame;
    const std::string title = trackTitle(mark.name, hash_only);
    if (planner.isLongEnough()) {
      planner.split(title);
      planner.beginSource(mark.start);
      track_of_mark[i] = planner.plan().tracks.size() - 1;
    }
  }
  planner.write(at, frames);
}

void planRegions(Planner& planner, const std::vector<Mark>& marks, int64_t frames) {
  planner.begin("");
  int64_t at = 0;
  bool first = true;
  std::vector<const Mark*> regions;
  for (size_t i = 0; i < marks.size(); ++i) {
    const Mark& mark = marks[i];
    if (!mark.end) continue;
    const int64_t start = std::max(frameAt(mark.start), at);
    const int64_t end = std::min(frameAt(*mark.end), frames);
    if (end < at || start >= frames) continue;
    regions.push_back(&mark);
    const bool makes_track = first || planner.isLongEnough();
    if (makes_track && !first) planner.split("");
    if (makes_track) planner.plan().track_of_mark[i] = planner.plan().tracks.size() - 1;
    first = false;
    planner.write(start, end);
    at = std::max(end, start);
  }
  // The module gives the regions' names and stretches to the tracks one by one, also when a region
  // has joined the track before and there are fewer tracks than regions.
  std::vector<PlannedTrack>& tracks = planner.plan().tracks;
  for (size_t i = 0; i < std::min(tracks.size(), regions.size()); ++i) {
    tracks[i].title = trackTitle(regions[i]->name, false);
    tracks[i].source_start = regions[i]->start;
    tracks[i].source_length = *regions[i]->end - regions[i]->start;
  }
}

}  // namespace

TrackPlan planTracks(const SinkConfig& config, const std::vector<Mark>& marks, int64_t frames) {
  assert(frames >= 0);
  Planner planner(config);
  planner.plan().track_of_mark.resize(marks.size());
  if (config.track_mode == kTracksFromMarkers) {
    planMarkers(planner, config, marks, frames);
  } else if (config.track_mode == kTracksFromRegions) {
    planRegions(planner, marks, frames);
  } else {
    planner.begin("");
    planner.write(0, frames);
  }
  TrackPlan plan = planner.finish();
  placePauses(marks, plan);
  return plan;
}

}  // namespace velmor::render
