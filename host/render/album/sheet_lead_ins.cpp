#include "host/render/album/sheet_lead_ins.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "disc/terminal/interrupt.h"
#include "disc/units/disc_limits.h"
#include "disc/units/disc_units.h"
#include "host/render/input/silences.h"

namespace velmor::render {

namespace {

constexpr int64_t kFramesPerSecond = disc::kSampleRate;
constexpr int64_t kShortestTrack = disc::kShortestTrackSectors * disc::kFramesPerSector;
constexpr int64_t kLongestDisc = disc::kLongestTimeSectors * disc::kFramesPerSector;
constexpr int64_t kShortestDiscLeadIn = disc::kSectorsBeforeTrack1 * disc::kFramesPerSector;

int64_t nearestFrame(double seconds) {
  return std::llround(seconds * disc::kSampleRate);
}

/// A stretch of the timeline, in frames.
struct Stretch {
  int64_t begin = 0, end = 0;
};

class LeadInTaker {
 public:
  explicit LeadInTaker(std::vector<InputInfo>& infos) : m_infos(infos) {}

  LeadIns run() {
    if (!layOut()) return {};
    std::vector<Stretch> wanted;
    const int64_t first = m_first_pause;
    // Whole milliseconds and whole sectors are the same every third sector only.
    const bool takes_first = first >= kShortestDiscLeadIn &&
                             first % (3 * disc::kFramesPerSector) == 0 &&
                             endOfAudio(0) - first >= kShortestTrack && isSilent({{0, first}});
    const int64_t length = commonLength();
    const bool takes_others = length > 0 && isSilent(m_pauses);
    if (takes_first) wanted.push_back({0, first});
    if (takes_others) wanted.insert(wanted.end(), m_pauses.begin(), m_pauses.end());
    if (!cut(wanted)) return {};
    if (takes_first) forgetFirstPause();
    if (takes_others)
      for (InputInfo& info : m_infos) info.pauses.clear();
    return {takes_first ? static_cast<int>(first * 1000 / kFramesPerSecond) : 0,
            takes_others ? static_cast<int>(length * 1000 / kFramesPerSecond) : 0};
  }

 private:
  /// Where tracks and pauses lie. False when a place is inside a sector, where a lead-in, which
  /// ends with one, would move the audio; and when all is longer than any disc, which is refused
  /// later: its pauses would be read for hours.
  bool layOut() {
    for (const InputInfo& info : m_infos) {
      m_begins.push_back(m_end);
      for (const Mark& mark : info.marks) {
        const int64_t start = m_end + nearestFrame(mark.start);
        // The tags of a track follow its own mark at the same place.
        if (m_starts.empty()) m_first_pause = nearestFrame(mark.pause_behind);
        if (m_starts.empty() || m_starts.back() != start) m_starts.push_back(start);
      }
      for (const double pause : info.pauses) m_pauses.push_back({m_end + nearestFrame(pause), 0});
      m_end += info.frames;
    }
    if (m_end > kLongestDisc) return false;
    if (m_starts.empty() || m_starts.front() != 0) return false;
    const auto is_inside = [](int64_t frame) { return frame % disc::kFramesPerSector != 0; };
    return std::none_of(m_starts.begin(), m_starts.end(), is_inside);
  }

  /// Where the audio of track `track` (from 0) ends: where the next one, or its pause, begins.
  int64_t endOfAudio(size_t track) const {
    const int64_t end = track + 1 < m_starts.size() ? m_starts[track + 1] : m_end;
    for (const Stretch& pause : m_pauses)
      if (pause.begin >= m_starts[track] && pause.begin < end) return pause.begin;
    return end;
  }

  /// The length that all pauses behind track 1 have, in frames; 0 when they are no lead-ins of one
  /// length. Sets their ends.
  int64_t commonLength() {
    if (m_pauses.empty() || m_pauses.size() + 1 != m_starts.size()) return 0;
    const int64_t length = m_starts[1] - m_pauses[0].begin;
    for (size_t i = 0; i < m_starts.size(); ++i) {
      const int64_t start = m_starts[i] + (i == 0 ? m_first_pause : 0);
      if (endOfAudio(i) - start < kShortestTrack) return 0;
      if (i == 0) continue;
      Stretch& pause = m_pauses[i - 1];
      pause.end = m_starts[i];
      if (pause.end - pause.begin != length) return 0;
    }
    return length % kFramesPerSecond == 0 ? length : 0;
  }

  /// Whether the audio is digital silence all through the stretches, which are ascending.
  bool isSilent(const std::vector<Stretch>& stretches) const {
    for (size_t i = 0; i < m_infos.size(); ++i) {
      const std::vector<Silence> parts = partsIn(i, stretches);
      if (!parts.empty() && !isSilentIn(m_infos[i], parts)) return false;
    }
    return true;
  }

  static bool isSilentIn(const InputInfo& info, const std::vector<Silence>& parts) {
    const auto input = openLaidOut(info, Dither::kNone);
    std::vector<double> left(kBlock), right(kBlock);
    const auto is_zero = [](double sample) { return sample == 0.0; };
    int64_t at = 0;
    for (const Silence& part : parts) {
      while (at < part.at + part.frames) {
        stopIfInterrupted();
        const bool within = at >= part.at;
        const int64_t due = (within ? part.at + part.frames : part.at) - at;
        const size_t got = input->read(left.data(), right.data(),
                                       static_cast<size_t>(std::min<int64_t>(due, kBlock)));
        if (got == 0) return false;
        const auto count = static_cast<std::ptrdiff_t>(got);
        if (within && !(std::all_of(left.begin(), left.begin() + count, is_zero) &&
                        std::all_of(right.begin(), right.begin() + count, is_zero)))
          return false;
        at += count;
      }
    }
    return true;
  }

  /// What of the stretches lies in input `index`, in its own frames.
  std::vector<Silence> partsIn(size_t index, const std::vector<Stretch>& stretches) const {
    const int64_t begin = m_begins[index];
    const int64_t end = begin + m_infos[index].frames;
    std::vector<Silence> parts;
    for (const Stretch& stretch : stretches) {
      const int64_t from = std::max(stretch.begin, begin);
      const int64_t to = std::min(stretch.end, end);
      if (from < to) parts.push_back({from - begin, to - from});
    }
    return parts;
  }

  /// False, with nothing done, when nothing of an input would be left.
  bool cut(const std::vector<Stretch>& stretches) {
    std::vector<std::vector<Silence>> cuts;
    for (size_t i = 0; i < m_infos.size(); ++i) {
      cuts.push_back(partsIn(i, stretches));
      if (framesOf(cuts.back()) == m_infos[i].frames) return false;
    }
    for (size_t i = 0; i < m_infos.size(); ++i) cutOne(m_infos[i], cuts[i]);
    return true;
  }

  static void cutOne(InputInfo& info, const std::vector<Silence>& cuts) {
    const auto moved = [&cuts](double seconds) {
      int64_t frames = 0;
      for (const Silence& gone : cuts)
        if (gone.at < nearestFrame(seconds)) frames += gone.frames;
      return disc::secondsOf(nearestFrame(seconds) - frames);
    };
    for (Mark& mark : info.marks) mark.start = moved(mark.start);
    for (double& pause : info.pauses) pause = moved(pause);
    info.frames -= framesOf(cuts);
    info.cuts = cuts;
  }

  void forgetFirstPause() {
    for (InputInfo& info : m_infos)
      for (Mark& mark : info.marks) mark.pause_behind = 0.0;
  }

  static constexpr int64_t kBlock = 16384;

  std::vector<InputInfo>& m_infos;
  std::vector<int64_t> m_begins;  ///< of the inputs
  std::vector<int64_t> m_starts;  ///< of the tracks
  std::vector<Stretch> m_pauses;
  int64_t m_first_pause = 0, m_end = 0;
};

}  // namespace

LeadIns takeLeadIns(std::vector<InputInfo>& infos) {
  return LeadInTaker(infos).run();
}

}  // namespace velmor::render
