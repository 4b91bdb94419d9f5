#include "disc/disc_time.h"

#include <cmath>
#include <cstdio>

namespace velmor::render {

std::string msfOf(int64_t sector) {
  char text[48];
  snprintf(text, sizeof(text), "%02lld:%02lld:%02lld",
           static_cast<long long>(sector / (60 * kSectorsPerSecond)),
           static_cast<long long>(sector / kSectorsPerSecond % 60),
           static_cast<long long>(sector % kSectorsPerSecond));
  return text;
}

std::string clockTime(double seconds) {
  const long long ms = std::llround(seconds * 1000.0);
  char text[64];
  if (ms >= 3600000) {
    snprintf(text, sizeof(text), "%lld:%02lld:%02lld.%03lld", ms / 3600000, ms / 60000 % 60,
             ms / 1000 % 60, ms % 1000);
  } else {
    snprintf(text, sizeof(text), "%lld:%02lld.%03lld", ms / 60000, ms / 1000 % 60, ms % 1000);
  }
  return text;
}

std::string counted(int64_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace velmor::render
