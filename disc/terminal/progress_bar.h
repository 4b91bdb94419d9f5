// The one progress bar of all programs, for people at a terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace velmor::disc {

/// How far something is.
struct ProgressLine {
  std::string what;            ///< "Rendering"
  std::optional<double> part;  ///< 0 to 1; nothing where nobody knows, or where there is no length
  std::string details;         ///< "55x real time"; may be empty
  std::optional<double> seconds_left;
};

/// "Rendering [####......]  42 %  55x real time, 1:03 left" within `columns` characters: the bar
/// goes first where that is too long, the details next.
std::string textOf(const ProgressLine& line, size_t columns);

/// Draws one line on standard error again and again; nothing at all when that is no terminal.
class ProgressBar {
 public:
  /// Draws nothing unless `wanted`.
  explicit ProgressBar(bool wanted);
  ~ProgressBar() { clear(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// Whether it is time for another drawing: a few a second are enough for people.
  bool due() const;
  /// Draws `line` in the place of the last one, due or not, as wide as the terminal is.
  void draw(const ProgressLine& line);
  /// Takes the line away, so that what follows begins on a clean one.
  void clear();

 private:
  using Clock = std::chrono::steady_clock;

  const bool m_visible;
  bool m_drawn = false;
  Clock::time_point m_last_drawing{};
};

/// Draws how many of `all` bytes are done, when it is time; `what` as in a `ProgressLine`.
void drawBytes(ProgressBar& bar, const std::string& what, int64_t done, int64_t all);

}  // namespace velmor::disc
