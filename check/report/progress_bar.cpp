#include "check/report/progress_bar.h"

#include <ostream>
#include <string>

namespace velmor::check {

void ProgressBar::show(int64_t done, int64_t all) {
  constexpr auto kPause = std::chrono::milliseconds(100);
  constexpr int64_t kWidth = 40;
  const auto now = std::chrono::steady_clock::now();
  if (!m_shown || all <= 0 || now - m_last < kPause) return;
  m_last = now;
  m_drawn = true;
  const auto filled = static_cast<size_t>(done * kWidth / all);
  m_out << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] "
        << done * 100 / all << " % of " << all / 1000000 << " MB " << std::flush;
}

void ProgressBar::clear() {
  if (m_drawn) m_out << "\r\x1b[K" << std::flush;
  m_drawn = false;
}

}  // namespace velmor::check
