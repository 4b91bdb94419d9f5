// The one progress bar of all programs, for people at a terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace velmor::disc {

/// The bar alone, "[####......]", filled up to `part` of it (0 to 1; what lies outside is brought
/// into that range).
std::string barText(double part);

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
  /// Draws `line` in the place of the last one, due or not.
  void draw(std::string_view line);
  /// Takes the line away, so that what follows begins on a clean one.
  void clear();

 private:
  using Clock = std::chrono::steady_clock;

  const bool m_visible;
  bool m_drawn = false;
  Clock::time_point m_last_drawing{};
};

/// Draws how many of `all` bytes are done, when it is time.
void drawBytes(ProgressBar& bar, int64_t done, int64_t all);

}  // namespace velmor::disc
