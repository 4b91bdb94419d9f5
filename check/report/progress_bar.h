// A progress bar for the reading of images, on a terminal's standard error.
#pragma once

#include <chrono>
#include <cstdint>
#include <iosfwd>

namespace velmor::check {

class ProgressBar {
 public:
  /// Draws on `out`; nothing at all unless `shown`.
  ProgressBar(std::ostream& out, bool shown) : m_out(out), m_shown(shown) {}
  ~ProgressBar() { clear(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// At most ten times a second something is drawn.
  void show(int64_t done, int64_t all);
  /// Takes the bar away, so that the report begins on a clean line.
  void clear();

 private:
  std::ostream& m_out;
  bool m_shown;
  bool m_drawn = false;
  std::chrono::steady_clock::time_point m_last{};
};

}  // namespace velmor::check
