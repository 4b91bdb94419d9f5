#include "disc/terminal/progress_bar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace velmor::disc {

namespace {

constexpr int kWidth = 30;
constexpr std::chrono::milliseconds kBetweenDrawings{150};
/// Back to the line's begin, and erase to its end.
constexpr const char* kEmptyLine = "\r\033[K";

}  // namespace

std::string barText(double part) {
  const auto filled = static_cast<size_t>(std::clamp(part, 0.0, 1.0) * kWidth);
  return '[' + std::string(filled, '#') + std::string(kWidth - filled, '.') + ']';
}

ProgressBar::ProgressBar(bool wanted) : m_visible(wanted && isatty(STDERR_FILENO) != 0) {}

bool ProgressBar::due() const {
  return m_visible && (!m_drawn || Clock::now() - m_last_drawing >= kBetweenDrawings);
}

void ProgressBar::draw(std::string_view line) {
  if (!m_visible) return;
  fputs(kEmptyLine, stderr);
  fwrite(line.data(), 1, line.size(), stderr);
  fflush(stderr);
  m_last_drawing = Clock::now();
  m_drawn = true;
}

void ProgressBar::clear() {
  if (m_drawn) fputs(kEmptyLine, stderr);
  m_drawn = false;
}

void drawBytes(ProgressBar& bar, int64_t done, int64_t all) {
  if (all <= 0 || !bar.due()) return;
  const double part = static_cast<double>(done) / static_cast<double>(all);
  bar.draw(barText(part) + ' ' + std::to_string(static_cast<int>(part * 100.0)) + " % of " +
           std::to_string(all / 1'000'000) + " MB");
}

}  // namespace velmor::disc
