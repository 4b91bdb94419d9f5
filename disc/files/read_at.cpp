#include "disc/files/read_at.h"

#include <unistd.h>

#include <cerrno>

namespace velmor::disc {

size_t readAt(int descriptor, int64_t offset, void* to, size_t count) {
  size_t done = 0;
  while (done < count) {
    const ssize_t got = ::pread(descriptor, static_cast<char*>(to) + done, count - done,
                                offset + static_cast<int64_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<size_t>(got);
  }
  return done;
}

}  // namespace velmor::disc
