// A progress bar for people at a terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace velmor::render {

/// The bar alone, filled up to `part` of it (0 to 1).
std::string progressBar(double part);

/// Draws on standard error, a few times a second, with speed and time left; draws nothing when that
/// is no terminal.
class Progress {
 public:
  /// `what` stands before the bar; `total_frames` of audio make it full.
  Progress(std::string what, int64_t total_frames, bool wanted);
  /// Takes the bar off the screen.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// `frames` are done. May be called as often as the work goes on.
  void show(int64_t frames);

 private:
  using Clock = std::chrono::steady_clock;

  const std::string m_what;
  const int64_t m_total;
  const bool m_visible;
  const Clock::time_point m_begun = Clock::now();
  Clock::time_point m_drawn{};
};

}  // namespace velmor::render
