// The growable byte buffer under every dynamic array, text and list of the module.
#pragma once

/// A `malloc`ed block that grows by one rule everywhere. Not thread-safe; nothing throws: an
/// allocation that fails leaves buffer and size as they were, which callers see by comparing
/// `GetSize()` with what they asked for.
class YDK_HeapBuf {
 public:
  /// `granularity`: least step of growth in bytes; 4096 and above grow in whole pages.
  explicit YDK_HeapBuf(int granularity = 4096) : m_granularity(granularity) {}
  ~YDK_HeapBuf();
  YDK_HeapBuf(const YDK_HeapBuf&) = delete;
  YDK_HeapBuf& operator=(const YDK_HeapBuf&) = delete;

  /// Makes `newsize` bytes used (a negative size is 0) and returns the buffer, null when it is
  /// empty. Without `allow_shrink` the block never gets smaller.
  void* Resize(int newsize, bool allow_shrink = true);
  int GetSize() const { return m_used; }
  /// Null whenever nothing is used, even if memory is still allocated.
  void* Get() const { return m_used ? m_ptr : nullptr; }
  /// Frees the block.
  void Release();

 private:
  bool needsReallocation(int newsize, bool allow_shrink) const;
  long long allocationFor(int newsize) const;
  bool reallocate(int newsize);

  void* m_ptr = nullptr;
  int m_allocated = 0;  ///< bytes
  int m_used = 0;       ///< bytes, 0 <= m_used <= m_allocated
  int m_granularity;    ///< bytes
};
