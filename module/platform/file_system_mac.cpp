#include <fcntl.h>
#include <sys/mount.h>
#include <sys/param.h>

#include "module/platform/file_system.h"

void platform_disable_write_cache(int fd) {
  fcntl(fd, F_NOCACHE, 1);
}

void platform_disable_read_cache(int fd) {
  fcntl(fd, F_NOCACHE, 1);
}

// Nothing to give back: without caching the system keeps no pages.
void platform_read_advanced(int /*fd*/, int64_t /*from*/, int64_t /*to*/) {}

bool platform_is_local_file(int fd) {
  struct statfs info;
  return fstatfs(fd, &info) != 0 || (info.f_flags & MNT_LOCAL) != 0;
}
