#include "module/support/file_write.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cassert>
#include <cerrno>
#include <climits>
#include <cstring>

#include "abi/host_functions.h"
#include "module/platform/file_system.h"

namespace {

constexpr int kLeastBuffered = 16384;
constexpr mode_t kFileMode = 0644;

/// The buffer's size for what was asked, 0 for unbuffered writing.
int bufferSize(int block_size, int min_blocks) {
  const int64_t asked = static_cast<int64_t>(block_size) * min_blocks;
  const int64_t pages = (asked + 4095) & ~int64_t{4095};
  return asked < kLeastBuffered || pages > INT_MAX ? 0 : static_cast<int>(pages);
}

int failureCode(int64_t result, int error) {
  if (result >= 0 || error == EDQUOT || error == ENOSPC) return kDiskOutOfSpace;
  return kDiskOtherError;
}

}  // namespace

YDK_FileWrite::YDK_FileWrite(const char* filename, int async_mode, int block_size, int min_blocks,
                             int /*max_blocks*/, bool append, bool no_lock)
    : buffer(4096) {
  if (!filename) return;
  fd = open(filename, O_WRONLY | O_CREAT | O_CLOEXEC, kFileMode);
  // The lock comes before the truncation: a file that another writer holds is left as it is.
  if (fd >= 0 && !no_lock && !lock()) {
    close(fd);
    fd = -1;
  }
  if (fd >= 0) {
    startPosition(append);
    if (async_mode > 1) platformDisableWriteCache(fd);
  }
  if (const int size = bufferSize(block_size, min_blocks)) buffer.Resize(size);
}

YDK_FileWrite::~YDK_FileWrite() {
  if (fd < 0) return;
  if (buffered > 0) {
    writeOut(buffer.Get(), buffered);
    end_pos = std::max(end_pos, write_pos);
    buffered = 0;
  }
  if (locked) flock(fd, LOCK_UN);
  close(fd);
  fd = -1;
}

/// False when another holder has the file.
bool YDK_FileWrite::lock() {
  if (flock(fd, LOCK_EX | LOCK_NB) == 0) {
    locked = true;
    return true;
  }
  if (errno == EWOULDBLOCK) return false;
  // The file system has no exclusive locks: a shared one must do, or none.
  locked = flock(fd, LOCK_SH | LOCK_NB) == 0;
  return true;
}

void YDK_FileWrite::startPosition(bool append) {
  if (!append) {
    // When the truncation fails, the old file's end stays behind the new data; the host finds that
    // when it compares the sizes.
    [[maybe_unused]] const int result = ftruncate(fd, 0);
    return;
  }
  struct stat info;
  if (fstat(fd, &info) == 0) {
    write_pos = info.st_size;
    end_pos = std::max<int64_t>(end_pos, info.st_size);
  }
}

int YDK_FileWrite::Write(const void* data, int len) {
  if (len <= 0) return len;
  if (buffer.GetSize() < 1) return writeUnbuffered(data, len);
  const auto* from = static_cast<const char*>(data);
  for (int remaining = len; remaining > 0;) {
    const int n = std::min(remaining, buffer.GetSize() - buffered);
    memcpy(static_cast<char*>(buffer.Get()) + buffered, from, static_cast<size_t>(n));
    from += n;
    remaining -= n;
    buffered += n;
    end_pos = std::max(end_pos, write_pos + buffered);
    if (buffered >= buffer.GetSize()) flush();
  }
  return len;
}

int YDK_FileWrite::writeUnbuffered(const void* data, int len) {
  const int64_t result = writeOut(data, len);
  if (result != len) ReportFailure(failureCode(result, errno));
  end_pos = std::max(end_pos, write_pos);
  return static_cast<int>(result);
}

/// One positioned write; returns its result.
int64_t YDK_FileWrite::writeOut(const void* data, int len) {
  const ssize_t result = pwrite(fd, data, static_cast<size_t>(len), write_pos);
  if (result > 0) write_pos += result;
  return result;
}

void YDK_FileWrite::flush() {
  const int64_t result = writeOut(buffer.Get(), buffered);
  if (result != buffered) ReportFailure(failureCode(result, errno));
  // Bytes that the system did not take are dropped on purpose; later data follows those that it
  // took.
  buffered = 0;
}

void YDK_FileWrite::ReportFailure(int code) {
  assert(code == kDiskOutOfSpace || code == kDiskOtherError);
  if (update_disk_counters) update_disk_counters(0, code);
}
