// libburn gives a drive half a second here and half a second there to come to rest. The emulated
// one needs none: in this program every nap is a short one.
#include <sys/types.h>
#include <time.h>

#include <algorithm>

extern "C" int usleep(useconds_t microseconds) {
  constexpr useconds_t kLongest = 1000;
  const timespec nap{0, static_cast<long>(std::min(microseconds, kLongest)) * 1000};
  return nanosleep(&nap, nullptr);
}
