#include "host/render/terminal/progress.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "disc/terminal/progress_bar.h"
#include "disc/units/disc_units.h"

namespace velmor::render {

Progress::Progress(std::string what, int64_t total_frames, bool wanted)
    : m_what(std::move(what)), m_total(std::max<int64_t>(total_frames, 1)), m_bar(wanted) {}

void Progress::show(int64_t frames) {
  if (!m_bar.due()) return;
  const double part = static_cast<double>(frames) / static_cast<double>(m_total);
  const double elapsed = std::chrono::duration<double>(Clock::now() - m_begun).count();
  const double left = part > 0.0 ? elapsed / part - elapsed : 0.0;
  char speed[64];
  snprintf(speed, sizeof(speed), "%.0fx real time",
           elapsed > 0.0 ? disc::secondsOf(frames) / elapsed : 0.0);
  m_bar.draw({m_what, part, speed, left});
}

}  // namespace velmor::render
