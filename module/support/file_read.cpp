#include "module/support/file_read.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "module/platform/file_system.h"

namespace {

constexpr int kBlock = 32768;
constexpr int kAlignment = 8192;
constexpr int kSmallestBuffer = 2 * kAlignment - 1;
constexpr int kStaggeredFrom = 16384;
constexpr int kLargeFill = 65536;

// Shared by all readers and not synchronised: a lost count only changes which fill is the short
// one.
unsigned g_fill_counter;

}  // namespace

YDK_FileRead::YDK_FileRead(const char* path) : m_bufspace(4096) {
  m_fd = open(path, O_RDONLY | O_CLOEXEC);
  if (m_fd < 0) return;
  m_locked = flock(m_fd, LOCK_SH | LOCK_NB) == 0;
  m_size_may_change = !m_locked;
  m_uncached = platformIsLocalFile(m_fd);
  if (m_uncached) platformDisableReadCache(m_fd);
  m_fsize = std::max<int64_t>(lseek(m_fd, 0, SEEK_END), 0);
  lseek(m_fd, 0, SEEK_SET);
  m_bufspace.Resize(kBlock + kAlignment - 1);
}

YDK_FileRead::~YDK_FileRead() {
  free(m_mem);
  if (m_mmap) munmap(m_mmap, static_cast<size_t>(m_fsize));
  if (m_fd < 0) return;
  if (m_locked) flock(m_fd, LOCK_UN);
  close(m_fd);
  m_fd = -1;
}

bool YDK_FileRead::isBuffered() const {
  return m_bufspace.GetSize() >= kSmallestBuffer;
}

const char* YDK_FileRead::wholeFile() const {
  return static_cast<const char*>(m_mmap ? m_mmap : m_mem);
}

int64_t YDK_FileRead::GetSize() {
  if (m_mem) return m_fsize;
  if (m_fd < 0) return -1;
  struct stat info;
  if (m_size_may_change && fstat(m_fd, &info) == 0) m_fsize = info.st_size;
  return m_fsize;
}

bool YDK_FileRead::SetPosition(int64_t pos) {
  m_flag = false;
  if (!m_mem && m_fd < 0) return true;
  if (m_size_may_change) GetSize();
  pos = std::clamp<int64_t>(pos, 0, m_fsize);
  if (pos == m_pos) return false;
  const int64_t block_start = m_pos - m_bufpos;
  m_pos = pos;
  if (wholeFile()) return false;
  if (isBuffered()) {
    if (pos >= block_start && pos < block_start + m_bufused) {
      m_bufpos = static_cast<int>(pos - block_start);
      return false;
    }
    m_bufused = m_bufpos = 0;
  }
  m_seeked = true;
  m_fpos = pos;
  return false;
}

int YDK_FileRead::Read(void* buf, int len) {
  if (wholeFile()) return readWholeFile(buf, len);
  if (m_size_may_change) GetSize();
  if (len <= 0 || m_fd < 0) return 0;
  return isBuffered() ? readBuffered(buf, len) : readUnbuffered(buf, len);
}

int YDK_FileRead::readWholeFile(void* buf, int len) {
  const int n = std::max(std::min(static_cast<int32_t>(m_fsize - m_pos), len), 0);
  if (n > 0) memcpy(buf, wholeFile() + static_cast<int32_t>(m_pos), static_cast<size_t>(n));
  m_pos += n;
  return n;
}

/// One physical read at `m_fpos`.
int64_t YDK_FileRead::readIn(void* buf, int len) {
  const int64_t r = pread(m_fd, buf, static_cast<size_t>(len), m_fpos);
  if (r > 0) {
    if (m_uncached) platformReadAdvanced(m_fd, m_fpos, m_fpos + r);
    m_fpos += r;
  }
  return r;
}

int YDK_FileRead::readUnbuffered(void* buf, int len) {
  const int64_t r = readIn(buf, len);
  // After a failed read (-1) the position is one byte further back. That is kept, because callers
  // go by the number that is returned and never by the position.
  m_pos += r;
  return static_cast<int>(r);
}

int YDK_FileRead::readBuffered(void* buf, int len) {
  auto* to = static_cast<char*>(buf);
  const auto base = reinterpret_cast<uintptr_t>(m_bufspace.Get());
  const auto padding = (kAlignment - base % kAlignment) % kAlignment;
  const char* block = static_cast<const char*>(m_bufspace.Get()) + padding;
  int done = 0;
  for (;;) {
    const int n = std::min(len - done, m_bufused - m_bufpos);
    memcpy(to + done, block + m_bufpos, static_cast<size_t>(n));
    m_bufpos += n;
    m_pos += n;
    done += n;
    if (done >= len) return done;
    m_bufused = m_bufpos = 0;
    const int64_t r = readIn(const_cast<char*>(block), fillSize());
    if (r <= 0) return done;
    m_bufused = static_cast<int>(r);
  }
}

/// Bytes of the next fill: after a seek alternately whole and half, which staggers the reads'
/// alignment.
int YDK_FileRead::fillSize() {
  int size = m_bufspace.GetSize() - (kAlignment - 1);
  if (m_seeked) {
    m_seeked = false;
    if (size >= kStaggeredFrom) size >>= g_fill_counter++ & (size >= kLargeFill ? 3U : 1U);
  }
  return size;
}
