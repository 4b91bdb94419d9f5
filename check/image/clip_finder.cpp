#include "check/image/clip_finder.h"

#include <algorithm>
#include <utility>

#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

constexpr size_t kSectorSamples = static_cast<size_t>(disc::kFramesPerSector) * 2;
/// Samples looked at in one go: a whole number of vectors.
constexpr size_t kBlock = 56;
static_assert(kSectorSamples % kBlock == 0);

bool atFullScale(int16_t sample) {
  return sample == INT16_MAX || sample == INT16_MIN;
}

/// Does a sample of the block lie at full scale? In a loud master most sectors have one that does,
/// but few of their blocks. A loop without branches, for the sake of the vector unit.
bool touchesFullScale(const int16_t* s) {
  int16_t found = 0;
  for (size_t i = 0; i < kBlock; ++i) {
    const bool full = (s[i] == INT16_MAX) | (s[i] == INT16_MIN);
    found = static_cast<int16_t>(found | static_cast<int16_t>(full));
  }
  return found != 0;
}

/// Are there three samples at full scale, one of a channel after the other, the first of them in
/// the block? Branchless as well.
bool holdsRun(const int16_t* s) {
  int16_t found = 0;
  for (size_t i = 0; i < kBlock; ++i) {
    const bool full = (s[i] == INT16_MAX) | (s[i] == INT16_MIN);
    const bool goes_on = (s[i] == s[i + 2]) & (s[i] == s[i + 4]);
    found = static_cast<int16_t>(found | static_cast<int16_t>(full & goes_on));
  }
  return found != 0;
}

/// Do three of them begin here?
bool beginsRun(const int16_t* s) {
  return atFullScale(*s) && s[2] == *s && s[4] == *s && *(s - 2) != *s;
}

/// How many frames from `frame` on have `level` in the channel.
size_t lengthAt(const int16_t* batch, size_t frames, size_t frame, size_t channel, int16_t level) {
  size_t end = frame;
  while (end < frames && batch[2 * end + channel] == level) ++end;
  return end - frame;
}

}  // namespace

void ClipFinder::readBatch(int16_t* batch, size_t frames, int64_t first_frame,
                           const std::vector<size_t>& touched) {
  // What lies before the batch is the last frame of the one before; behind it nothing is known yet.
  std::copy(m_last_frame.begin(), m_last_frame.end(), batch - 2);
  std::fill_n(batch + 2 * frames, 2 * kMargin, int16_t{0});
  for (size_t channel = 0; channel < 2; ++channel) goOn(channel, batch, frames);
  for (const size_t sector : touched)
    readSector(batch, frames, sector * static_cast<size_t>(disc::kFramesPerSector), first_frame);
  for (size_t channel = 0; channel < 2; ++channel) noteEnd(channel, batch, frames, first_frame);
  std::copy_n(batch + 2 * (frames - 1), 2, m_last_frame.begin());
}

/// Lengthens the run that reached the end of the batch before.
void ClipFinder::goOn(size_t channel, const int16_t* batch, size_t frames) {
  Open& open = m_open[channel];
  if (open.run.samples == 0) return;
  const size_t more = lengthAt(batch, frames, 0, channel, open.level);
  open.run.samples += static_cast<int64_t>(more);
  if (more == frames) return;
  close(open.run);
  open.run.samples = 0;
}

void ClipFinder::readSector(const int16_t* batch, size_t frames, size_t first,
                            int64_t first_frame) {
  const size_t end = 2 * first + kSectorSamples;
  for (size_t block = 2 * first; block < end; block += kBlock) {
    if (!touchesFullScale(batch + block) || !holdsRun(batch + block)) continue;
    for (size_t i = block; i < block + kBlock; ++i)
      if (beginsRun(batch + i)) readRun(batch, frames, i, first_frame);
  }
}

/// The run that begins at `sample` of the batch. One that reaches its end goes on in the next.
void ClipFinder::readRun(const int16_t* batch, size_t frames, size_t sample, int64_t first_frame) {
  const size_t frame = sample / 2, channel = sample % 2;
  const int16_t level = batch[sample];
  const size_t length = lengthAt(batch, frames, frame, channel, level);
  const ClippedRun run{first_frame + static_cast<int64_t>(frame), static_cast<int64_t>(length)};
  if (frame + length < frames)
    close(run);
  else
    m_open[channel] = {run, level};
}

/// Fewer than three samples at the end of the batch are no run yet, but may become one.
void ClipFinder::noteEnd(size_t channel, const int16_t* batch, size_t frames, int64_t first_frame) {
  Open& open = m_open[channel];
  const int16_t level = batch[2 * (frames - 1) + channel];
  if (open.run.samples > 0 || !atFullScale(level)) return;
  const size_t length = frames > 1 && batch[2 * (frames - 2) + channel] == level ? 2 : 1;
  open = {{first_frame + static_cast<int64_t>(frames - length), static_cast<int64_t>(length)},
          level};
}

void ClipFinder::close(const ClippedRun& run) {
  if (run.samples < kClippedRun) return;
  if (m_found.runs.size() < ClippedRuns::kMost)
    m_found.runs.push_back(run);
  else
    ++m_found.left_out;
}

ClippedRuns ClipFinder::finish() {
  for (Open& open : m_open) {
    close(open.run);
    open.run.samples = 0;
  }
  // A long run of one channel ends after shorter ones of the other that began later.
  std::sort(m_found.runs.begin(), m_found.runs.end(),
            [](const ClippedRun& a, const ClippedRun& b) { return a.frame < b.frame; });
  return std::move(m_found);
}

}  // namespace velmor::check
