#include "host/render/terminal/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "disc/disc_time.h"

namespace velmor::render {

namespace {

constexpr int kWidth = 30;
constexpr std::chrono::milliseconds kBetweenDrawings{150};

}  // namespace

std::string progressBar(double part) {
  const auto filled = static_cast<size_t>(std::clamp(part, 0.0, 1.0) * kWidth);
  return std::string(filled, '#') + std::string(kWidth - filled, '.');
}

Progress::Progress(std::string what, int64_t total_frames, bool wanted)
    : m_what(std::move(what)),
      m_total(std::max<int64_t>(total_frames, 1)),
      m_visible(wanted && isatty(STDERR_FILENO)) {}

Progress::~Progress() {
  if (m_visible) fputs("\r\033[K", stderr);
}

void Progress::show(int64_t frames) {
  const Clock::time_point now = Clock::now();
  if (!m_visible || now - m_drawn < kBetweenDrawings) return;
  m_drawn = now;
  const double part = static_cast<double>(frames) / static_cast<double>(m_total);
  const double elapsed = std::chrono::duration<double>(now - m_begun).count();
  const double audio = static_cast<double>(frames) / kFramesPerSecond;
  const double left = part > 0.0 ? elapsed / part - elapsed : 0.0;
  fprintf(stderr, "\r\033[K%s [%s] %3d %%  %.0fx real time, %s left", m_what.c_str(),
          progressBar(part).c_str(), static_cast<int>(part * 100.0),
          elapsed > 0.0 ? audio / elapsed : 0.0, clockTime(left).c_str());
  fflush(stderr);
}

}  // namespace velmor::render
