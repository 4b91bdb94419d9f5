// A progress bar for the reading of images, on a terminal's standard error.
#pragma once

#include <chrono>
#include <cstdint>
#include <iosfwd>

namespace velmor::cdcheck {

class ProgressBar {
 public:
  /// Draws on `out`; nothing at all unless `shown`.
  ProgressBar(std::ostream& out, bool shown) : out_(out), shown_(shown) {}
  ~ProgressBar() { clear(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// At most ten times a second something is drawn.
  void show(int64_t done, int64_t all);
  /// Takes the bar away, so that the report begins on a clean line.
  void clear();

 private:
  std::ostream& out_;
  bool shown_;
  bool drawn_ = false;
  std::chrono::steady_clock::time_point last_{};
};

}  // namespace velmor::cdcheck
