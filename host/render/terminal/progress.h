// How far a render is, for people at a terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "disc/terminal/progress_bar.h"

namespace velmor::render {

/// Draws a progress bar with speed and time left; takes it away with itself.
class Progress {
 public:
  /// `what` stands before the bar; `total_frames` of audio make it full.
  Progress(std::string what, int64_t total_frames, bool wanted);
  void show(int64_t frames);

 private:
  using Clock = std::chrono::steady_clock;

  const std::string m_what;
  const int64_t m_total;
  const Clock::time_point m_begun = Clock::now();
  disc::ProgressBar m_bar;
};

}  // namespace velmor::render
