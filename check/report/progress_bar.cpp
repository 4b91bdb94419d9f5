#include "check/report/progress_bar.h"

#include <ostream>
#include <string>

namespace velmor::cdcheck {

void ProgressBar::show(int64_t done, int64_t all) {
  constexpr auto kPause = std::chrono::milliseconds(100);
  constexpr int64_t kWidth = 40;
  const auto now = std::chrono::steady_clock::now();
  if (!shown_ || all <= 0 || now - last_ < kPause) return;
  last_ = now;
  drawn_ = true;
  const auto filled = static_cast<size_t>(done * kWidth / all);
  out_ << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, ' ') << "] "
       << done * 100 / all << " % of " << all / 1000000 << " MB " << std::flush;
}

void ProgressBar::clear() {
  if (drawn_) out_ << "\r\x1b[K" << std::flush;
  drawn_ = false;
}

}  // namespace velmor::cdcheck
