// A large file read with few system calls and cheap seeks.
#pragma once

#include <cstdint>

#include "module/support/heap_buf.h"

/// Reads a file from one thread at a time, under a shared advisory lock where the
/// file system and other processes allow one.
class YDK_FileRead {
 public:
  /// Opens `path` read-only; unusable (`IsOpen()` false) when that fails.
  explicit YDK_FileRead(const char* path);
  ~YDK_FileRead();
  YDK_FileRead(const YDK_FileRead&) = delete;
  YDK_FileRead& operator=(const YDK_FileRead&) = delete;

  bool IsOpen() const { return m_fd >= 0; }
  /// Goes to `pos` (bytes, clamped to the file). False on success, true when no file is open.
  bool SetPosition(int64_t pos);
  /// Copies up to `len` bytes: 0 at the end of the file; negative only for a failed unbuffered
  /// read, which also moves the position back by one byte.
  int Read(void* buf, int len);
  /// Bytes, -1 when no file is open and there is no memory copy.
  int64_t GetSize();
  /// Offset of the next byte `Read` gives, -1 as above.
  int64_t GetPosition() const { return m_fd < 0 && !m_mem ? -1 : m_pos; }

 private:
  bool isBuffered() const;
  const char* wholeFile() const;
  int readWholeFile(void* buf, int len);
  int readUnbuffered(void* buf, int len);
  int readBuffered(void* buf, int len);
  int fillSize();
  int64_t readIn(void* buf, int len);

  YDK_HeapBuf m_bufspace;  ///< its size decides whether reading is buffered
  int m_bufused = 0;       ///< valid bytes in the block
  int m_bufpos = 0;        ///< offset of the next byte inside the block
  int64_t m_pos = 0;       ///< offset in the file of the next byte the caller gets
  int64_t m_reserved = 0;  ///< always 0; holds its place in the fixed layout, read by nobody
  int64_t m_fsize = 0;     ///< bytes
  void* m_mmap = nullptr;  ///< mapping of the whole file
  void* m_mem = nullptr;   ///< copy of the whole file
  int64_t m_fpos = 0;      ///< offset of the next physical read
  int m_fd = -1;
  bool m_locked = false;           ///< a shared lock is held
  bool m_size_may_change = false;  ///< no lock: another process may be writing
  bool m_seeked = true;            ///< the next fill comes after a seek
  bool m_flag = false;             ///< likewise, false
  bool m_uncached = false;         ///< pages read are to be given back to the system
};
