#include "host/render/input/silences.h"

#include <algorithm>
#include <utility>

namespace velmor::render {

namespace {

class SilencedInput : public AudioInput {
 public:
  SilencedInput(std::unique_ptr<AudioInput> source, std::vector<Silence> silences)
      : m_source(std::move(source)), m_silences(std::move(silences)), m_info(m_source->info()) {
    std::stable_sort(m_silences.begin(), m_silences.end(),
                     [](const Silence& a, const Silence& b) { return a.at < b.at; });
    m_info.frames += framesOf(m_silences);
  }

  const InputInfo& info() const override { return m_info; }
  bool hasAddedDither() const override { return m_source->hasAddedDither(); }

  size_t read(double* left, double* right, size_t frames) override {
    size_t done = 0;
    while (done < frames) {
      const size_t wanted = frames - done;
      size_t got = takeSilence(wanted);
      if (got > 0) {
        std::fill_n(left + done, got, 0.0);
        std::fill_n(right + done, got, 0.0);
      } else {
        got = m_source->read(left + done, right + done, soundBefore(wanted));
        if (!goOn(got)) break;
      }
      done += got;
    }
    return done;
  }

  /// A stretch is silence or sound, which so keeps the form that the source gives it.
  void readStretch(AudioStretch& stretch, size_t frames) override {
    do {
      if (const size_t silent = takeSilence(frames)) {
        stretch.fillDecoded(silent, [](double* left, double* right, size_t most) {
          std::fill_n(left, most, 0.0);
          std::fill_n(right, most, 0.0);
          return most;
        });
        return;
      }
      m_source->readStretch(stretch, soundBefore(frames));
    } while (goOn(stretch.frames()) && stretch.frames() == 0);
  }

 private:
  /// How many of the next `most` frames are silence; they count as read.
  size_t takeSilence(size_t most) {
    while (m_next < m_silences.size() && m_silences[m_next].at <= m_at) {
      Silence& silence = m_silences[m_next];
      const auto taken =
          static_cast<size_t>(std::min<int64_t>(silence.frames, static_cast<int64_t>(most)));
      silence.frames -= static_cast<int64_t>(taken);
      if (silence.frames == 0) ++m_next;
      if (taken > 0) return taken;
    }
    return 0;
  }

  /// How many of the next `most` frames are the source's own; no silence begins here.
  size_t soundBefore(size_t most) const {
    if (m_next == m_silences.size()) return most;
    return static_cast<size_t>(
        std::min<int64_t>(m_silences[m_next].at - m_at, static_cast<int64_t>(most)));
  }

  /// Counts `got` frames of the source; at its end the silences that are left are due. False when
  /// there are none.
  bool goOn(size_t got) {
    m_at = got > 0 ? m_at + static_cast<int64_t>(got) : kAtTheEnd;
    return got > 0 || m_next < m_silences.size();
  }

  std::unique_ptr<AudioInput> m_source;
  std::vector<Silence> m_silences;  ///< ascending; what is left of them
  InputInfo m_info;
  size_t m_next = 0;
  int64_t m_at = 0;  ///< frames of the source so far
};

class CutInput : public AudioInput {
 public:
  CutInput(std::unique_ptr<AudioInput> source, std::vector<Silence> cuts)
      : m_source(std::move(source)), m_cuts(std::move(cuts)), m_info(m_source->info()) {
    m_info.frames -= framesOf(m_cuts);
  }

  const InputInfo& info() const override { return m_info; }
  bool hasAddedDither() const override { return m_source->hasAddedDither(); }

  size_t read(double* left, double* right, size_t frames) override {
    size_t done = 0;
    while (done < frames) {
      skipCut();
      const size_t got = m_source->read(left + done, right + done, keptBefore(frames - done));
      m_at += static_cast<int64_t>(got);
      if (got == 0) break;
      done += got;
    }
    return done;
  }
  void readStretch(AudioStretch& stretch, size_t frames) override {
    skipCut();
    m_source->readStretch(stretch, keptBefore(frames));
    m_at += static_cast<int64_t>(stretch.frames());
  }

 private:
  /// Reads over the stretch that is left out here, if there is one.
  void skipCut() {
    if (m_next == m_cuts.size() || m_cuts[m_next].at > m_at) return;
    AudioStretch skipped;
    for (int64_t left = m_cuts[m_next].frames; left > 0;) {
      m_source->readStretch(skipped, static_cast<size_t>(std::min<int64_t>(left, kSkipped)));
      if (skipped.frames() == 0) return;
      left -= static_cast<int64_t>(skipped.frames());
      m_at += static_cast<int64_t>(skipped.frames());
    }
    ++m_next;
  }
  size_t keptBefore(size_t most) const {
    if (m_next == m_cuts.size()) return most;
    return static_cast<size_t>(
        std::min<int64_t>(m_cuts[m_next].at - m_at, static_cast<int64_t>(most)));
  }

  static constexpr int64_t kSkipped = 16384;

  std::unique_ptr<AudioInput> m_source;
  std::vector<Silence> m_cuts;
  InputInfo m_info;
  size_t m_next = 0;
  int64_t m_at = 0;  ///< frames of the source so far
};

}  // namespace

int64_t framesOf(const std::vector<Silence>& silences) {
  int64_t frames = 0;
  for (const Silence& silence : silences) frames += silence.frames;
  return frames;
}

std::unique_ptr<AudioInput> withSilences(std::unique_ptr<AudioInput> source,
                                         std::vector<Silence> silences) {
  if (silences.empty()) return source;
  return std::make_unique<SilencedInput>(std::move(source), std::move(silences));
}

std::unique_ptr<AudioInput> withoutCuts(std::unique_ptr<AudioInput> source,
                                        std::vector<Silence> cuts) {
  if (cuts.empty()) return source;
  return std::make_unique<CutInput>(std::move(source), std::move(cuts));
}

std::unique_ptr<AudioInput> openLaidOut(const InputInfo& info, Dither dither) {
  return withoutCuts(withSilences(AudioInput::open(info.path, dither, info.raw), info.silences),
                     info.cuts);
}

}  // namespace velmor::render
