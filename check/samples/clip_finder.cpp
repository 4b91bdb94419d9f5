#include "check/samples/clip_finder.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace velmor::check {

namespace {

/// Of the last block of a batch: whether a run goes on behind its last frame is not known yet.
void leaveLastFrame(BlockTurns& turns) {
  constexpr uint64_t kLastFrame = uint64_t{3} << (kBlockSamples - 2);
  turns.begun &= ~kLastFrame;
  turns.ended &= ~kLastFrame;
  turns.runs = std::popcount(turns.begun);
}

}  // namespace

void ClipFinder::readBatch(int16_t* batch, size_t sectors, int64_t first_frame,
                           const std::vector<LoudSector>& loud) {
  readLastFrame(batch[0], batch[1]);
  std::copy(m_last_samples.end() - kTurnsLookBack, m_last_samples.end(), batch - kTurnsLookBack);
  const size_t samples = sectors * kSectorSamples;
  std::array<BlockTurns, kSectorBlocks> found;
  for (const LoudSector& l : loud) {
    const size_t first = l.sector * kSectorSamples;
    const size_t count = m_loops.turns(batch + first, l.turn_blocks, found.data());
    for (size_t i = 0; i < count; ++i) {
      const size_t at = first + blockBegin(found[i].block);
      if (at + kBlockSamples == samples) leaveLastFrame(found[i]);
      readTurns(found[i], first_frame + static_cast<int64_t>(at / 2));
    }
  }
  std::copy_n(batch + samples - m_last_samples.size(), m_last_samples.size(),
              m_last_samples.begin());
  m_end = first_frame + static_cast<int64_t>(samples / 2);
}

/// Of the batch before, now that the frame behind it is there.
void ClipFinder::readLastFrame(int16_t left_behind, int16_t right_behind) {
  for (size_t channel = 0; channel < 2; ++channel) {
    const int16_t* here = &m_last_samples[m_last_samples.size() - 2 + channel];
    const bool full = *here == INT16_MAX || *here == INT16_MIN;
    if (!full || *here != *(here - 2)) continue;
    const bool came_on = *(here - 2) == *(here - 4);
    const bool goes_on = *here == (channel == 0 ? left_behind : right_behind);
    if (goes_on && !came_on) {
      m_open[channel] = m_end - 2;
      ++m_begun;
    }
    if (!goes_on && came_on) close(channel, m_end);
  }
}

void ClipFinder::readTurns(const BlockTurns& turns, int64_t first_frame) {
  m_begun += turns.runs;
  if (full()) return;
  for (uint64_t left = turns.begun | turns.ended; left != 0; left &= left - 1) {
    const int bit = std::countr_zero(left);
    const size_t channel = static_cast<size_t>(bit) % 2;
    const int64_t frame = first_frame + bit / 2;
    if (turns.begun >> bit & 1)
      m_open[channel] = frame - 1;
    else
      close(channel, frame + 1);
  }
}

/// `end` is the first frame behind the run.
void ClipFinder::close(size_t channel, int64_t end) {
  const int64_t first = std::exchange(m_open[channel], kNone);
  if (first != kNone && !full()) m_found.runs.push_back({first, end - first});
}

ClippedRuns ClipFinder::finish() {
  readLastFrame(0, 0);
  m_found.left_out = m_begun - static_cast<int64_t>(m_found.runs.size());
  // A long run of one channel ends after shorter ones of the other that began later.
  std::sort(m_found.runs.begin(), m_found.runs.end(),
            [](const ClippedRun& a, const ClippedRun& b) { return a.frame < b.frame; });
  return std::move(m_found);
}

}  // namespace velmor::check
