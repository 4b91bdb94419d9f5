#include <fcntl.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <cassert>

#include "module/platform/file_system.h"

namespace {

// File systems whose files live on another machine, by the magic numbers of statfs(2). What
// a FUSE file system stands on cannot be told from outside; it counts as such a one, so that its
// cache is left alone.
constexpr std::array<uint32_t, 14> kNetworkFileSystems = {
    0x6969,      // NFS
    0x517B,      // SMB
    0xFF534D42,  // CIFS
    0xFE534D42,  // SMB2
    0x00C36400,  // CEPH
    0x5346414F,  // AFS
    0x6B414653,  // AFS
    0x73757245,  // CODA
    0x01021997,  // 9P
    0x564C,      // NCP
    0x7461636F,  // OCFS2
    0x01161970,  // GFS2
    0x0BD00BD0,  // Lustre
    0x65735546,  // FUSE
};

// Pages are given back in whole steps of this size: a call per read costs more than it frees.
constexpr int64_t kDropStep = 4 * 1024 * 1024;

}  // namespace

// Written pages stay cached: there is no way to switch that off that does not also slow the
// writing.
void platformDisableWriteCache(int /*fd*/) {}

void platformDisableReadCache(int fd) {
  posix_fadvise(fd, 0, 0, POSIX_FADV_SEQUENTIAL);
}

void platformReadAdvanced(int fd, int64_t from, int64_t to) {
  assert(from < to);
  const int64_t first = from / kDropStep * kDropStep;
  const int64_t behind = to / kDropStep * kDropStep;
  if (behind > first) posix_fadvise(fd, first, behind - first, POSIX_FADV_DONTNEED);
}

bool platformIsLocalFile(int fd) {
  struct statfs info;
  if (fstatfs(fd, &info) != 0) return true;
  const auto type = static_cast<uint32_t>(info.f_type);
  return std::find(kNetworkFileSystems.begin(), kNetworkFileSystems.end(), type) ==
         kNetworkFileSystems.end();
}
