#include <fcntl.h>
#include <sys/mount.h>
#include <sys/param.h>

#include "module/platform/file_system.h"

void platformDisableWriteCache(int fd) {
  fcntl(fd, F_NOCACHE, 1);
}

void platformDisableReadCache(int fd) {
  fcntl(fd, F_NOCACHE, 1);
}

// Nothing to give back: without caching the system keeps no pages.
void platformReadAdvanced(int /*fd*/, int64_t /*from*/, int64_t /*to*/) {}

bool platformIsLocalFile(int fd) {
  struct statfs info;
  return fstatfs(fd, &info) != 0 || (info.f_flags & MNT_LOCAL) != 0;
}
