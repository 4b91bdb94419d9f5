// A file written in order through one large buffer.
#pragma once

#include <cstdint>

#include "module/support/heap_buf.h"

/// Writes a file from one thread, with an advisory lock that keeps a second writer off it. Failed
/// writes are told to the host's disk counters; there is no error state: what did not land is
/// dropped and later data follows what did, so that the host's own comparison of the sizes tells.
class YDK_FileWrite {
 public:
  /// Creates or truncates `filename` (null: stays closed); `append` keeps what is there, `no_lock`
  /// takes no lock. `async_mode` above 1 switches the system's caching off. The buffer holds
  /// `block_size` x `min_blocks` bytes, in whole pages; below 16384 bytes there is none.
  /// `max_blocks` is not used. Closed afterwards (`fd` < 0) when the file cannot be opened or
  /// another writer has it.
  YDK_FileWrite(const char* filename, int async_mode, int block_size, int min_blocks,
                int max_blocks, bool append, bool no_lock);
  /// Writes what is buffered, releases the lock, closes.
  ~YDK_FileWrite();
  YDK_FileWrite(const YDK_FileWrite&) = delete;
  YDK_FileWrite& operator=(const YDK_FileWrite&) = delete;

  /// Appends `len` bytes. Buffered: always returns `len`. Unbuffered: what the one write returned.
  int Write(const void* data, int len);
  /// Where the next byte will go, -1 when the file is not open.
  int64_t GetPosition() const { return fd >= 0 ? write_pos + buffered : -1; }

  /// Tells the host's disk counters of a failure; `code` is one of the counters' failure codes.
  static void ReportFailure(int code);

 private:
  bool lock();
  void startPosition(bool append);
  int writeUnbuffered(const void* data, int len);
  int64_t writeOut(const void* data, int len);
  void flush();

  int64_t write_pos = 0;  ///< file offset of the buffer's first byte
  int64_t end_pos = 0;    ///< largest end reached, buffered bytes included; part of the fixed
                          ///< layout, read by nobody
  YDK_HeapBuf buffer;     ///< empty in unbuffered mode
  int buffered = 0;       ///< bytes waiting in `buffer`

 public:
  int fd = -1;  ///< descriptor, -1 when not open

 private:
  bool locked = false;  ///< a lock is to be released on close
};
