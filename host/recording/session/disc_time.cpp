#include "host/recording/session/disc_time.h"

#include <array>
#include <cassert>
#include <cinttypes>
#include <cstdio>

namespace velmor::recording {

std::string minutesSecondsFrames(int64_t sectors) {
  assert(sectors >= 0);
  const int64_t seconds = sectors / kSectorsPerSecond;
  std::array<char, 48> text{};
  std::snprintf(text.data(), text.size(), "%02" PRId64 ":%02" PRId64 ":%02" PRId64, seconds / 60,
                seconds % 60, sectors % kSectorsPerSecond);
  return text.data();
}

}  // namespace velmor::recording
