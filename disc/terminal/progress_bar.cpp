#include "disc/terminal/progress_bar.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "disc/text/utf8.h"
#include "disc/units/disc_time.h"

namespace velmor::disc {

namespace {

constexpr int kWidth = 30;
constexpr std::chrono::milliseconds kBetweenDrawings{150};
/// Back to the line's begin, and erase to its end.
constexpr const char* kEmptyLine = "\r\033[K";

std::string barText(double part) {
  const auto filled = static_cast<size_t>(part * kWidth);
  return " [" + std::string(filled, '#') + std::string(kWidth - filled, '.') + ']';
}

std::string percentText(double part) {
  char text[16];
  snprintf(text, sizeof(text), " %3d %%", static_cast<int>(part * 100.0));
  return text;
}

/// What stands behind the percentage.
std::string tailText(const ProgressLine& line, bool with_details) {
  std::string tail = with_details ? line.details : "";
  if (line.seconds_left) {
    tail += (tail.empty() ? "" : ", ") + wholeSeconds(std::max(*line.seconds_left, 0.0)) + " left";
  }
  return (tail.empty() ? "" : "  ") + tail;
}

/// The terminal's width; 80 where it does not say.
size_t columnsOfTerminal() {
  winsize size{};
  const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : 80;
}

}  // namespace

std::string textOf(const ProgressLine& line, size_t columns) {
  if (!line.part) return std::string(beginningOf(line.what + " ...", columns));
  const double part = std::clamp(*line.part, 0.0, 1.0);
  const std::string begin = line.what;
  std::string text = begin + barText(part) + percentText(part) + tailText(line, true);
  if (text.size() > columns) text = begin + percentText(part) + tailText(line, true);
  if (text.size() > columns) text = begin + percentText(part) + tailText(line, false);
  if (text.size() > columns) text = begin + percentText(part);
  return std::string(beginningOf(text, columns));
}

ProgressBar::ProgressBar(bool wanted) : m_visible(wanted && isatty(STDERR_FILENO) != 0) {}

bool ProgressBar::due() const {
  return m_visible && (!m_drawn || Clock::now() - m_last_drawing >= kBetweenDrawings);
}

void ProgressBar::draw(const ProgressLine& line) {
  if (!m_visible) return;
  // One column stays free: a terminal goes on to its next line behind the last one.
  const std::string text = textOf(line, columnsOfTerminal() - 1);
  fputs(kEmptyLine, stderr);
  fwrite(text.data(), 1, text.size(), stderr);
  fflush(stderr);
  m_last_drawing = Clock::now();
  m_drawn = true;
}

void ProgressBar::clear() {
  if (m_drawn) fputs(kEmptyLine, stderr);
  m_drawn = false;
}

void drawBytes(ProgressBar& bar, const std::string& what, int64_t done, int64_t all) {
  if (all <= 0 || !bar.due()) return;
  const double part = static_cast<double>(done) / static_cast<double>(all);
  bar.draw({what, part, "of " + std::to_string(all / 1'000'000) + " MB", {}});
}

}  // namespace velmor::disc
