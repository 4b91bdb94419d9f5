// libburn gives a drive half a second here and a whole one there to come to rest. The emulated
// drive needs none: in this program every nap is a short one.
#include <sys/types.h>
#include <time.h>

#include <algorithm>

extern "C" int usleep(useconds_t microseconds) {
  constexpr useconds_t kLongest = 1000;
  const timespec nap{0, static_cast<long>(std::min(microseconds, kLongest)) * 1000};
  return nanosleep(&nap, nullptr);
}

extern "C" unsigned sleep(unsigned seconds) {
  usleep(seconds > 0 ? 1000 : 0);
  return 0;
}
