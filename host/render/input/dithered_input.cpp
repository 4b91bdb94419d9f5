#include "host/render/input/dithered_input.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace velmor::render {

namespace {

constexpr size_t kLoadedFrames = 16384;

}  // namespace

DitheredInput::DitheredInput(std::unique_ptr<AudioInput> source)
    : m_source(std::move(source)),
      m_left(kExactStretch + kLoadedFrames),
      m_right(kExactStretch + kLoadedFrames) {}

bool DitheredInput::hasAddedDither() const {
  return m_left_dither.hasAdded() || m_right_dither.hasAdded();
}

size_t DitheredInput::read(double* left, double* right, size_t frames) {
  size_t done = 0;
  while (done < frames) {
    while (m_used == m_decided && !m_ended) load();
    const size_t count = std::min(frames - done, m_decided - m_used);
    if (count == 0) break;
    std::copy_n(m_left.data() + m_used, count, left + done);
    std::copy_n((info().channels == 1 ? m_left : m_right).data() + m_used, count, right + done);
    m_used += count;
    done += count;
  }
  return done;
}

/// The frames that wait for what follows go to the buffers' start, and what follows behind them.
void DitheredInput::load() {
  const auto from = static_cast<std::ptrdiff_t>(m_used);
  const auto to = static_cast<std::ptrdiff_t>(m_filled);
  std::copy(m_left.begin() + from, m_left.begin() + to, m_left.begin());
  std::copy(m_right.begin() + from, m_right.begin() + to, m_right.begin());
  const size_t waiting = m_filled - m_used;
  const size_t got =
      m_source->read(m_left.data() + waiting, m_right.data() + waiting, kLoadedFrames);
  m_used = 0;
  m_filled = waiting + got;
  m_ended = got == 0;
  m_left_dither.go(m_left.data() + waiting, got);
  const bool stereo = info().channels > 1;
  if (stereo) m_right_dither.go(m_right.data() + waiting, got);
  if (m_ended) {
    m_left_dither.end(m_left.data() + m_filled);
    if (stereo) m_right_dither.end(m_right.data() + m_filled);
  }
  m_decided = m_filled - std::max(m_left_dither.undecided(), m_right_dither.undecided());
}

}  // namespace velmor::render
