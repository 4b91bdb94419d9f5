// A growable zero-terminated text.
#pragma once

#include "module/support/heap_buf.h"

/// Text of bytes. Not thread-safe; nothing throws: when memory runs out the text stays as it was.
class YDK_String {
 public:
  explicit YDK_String(int granularity = 128) : m_hb(granularity) {}

  /// Replaces the text by `s` (null: empty), by at most `maxlen` bytes of it when `maxlen` is above
  /// 0. `s` may lie inside this very text.
  void Set(const char* s, int maxlen = 0);
  /// Appends likewise.
  void Append(const char* s, int maxlen = 0);
  /// Never null. An unset string gives a shared zero character, zeroed again on every such call.
  char* Get();
  const char* Get() const { return const_cast<YDK_String*>(this)->Get(); }
  /// Bytes up to the first zero.
  int GetLength() const;

  /// The one primitive: keeps `offset` bytes, puts `len` bytes of `s` there, then the `tail_bytes`
  /// bytes that followed `offset`.
  void __doSet(int offset, const char* s, int len, int tail_bytes);

 private:
  YDK_HeapBuf m_hb;  ///< text and terminating zero; empty when never set
};
