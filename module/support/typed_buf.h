// A growable array of plain values.
#pragma once

#include <climits>
#include <type_traits>

#include "module/support/heap_buf.h"

/// A `YDK_HeapBuf` seen as an array of T.
template <class T>
class YDK_TypedBuf {
  static_assert(std::is_trivially_copyable_v<T>, "the block moves with realloc");

 public:
  explicit YDK_TypedBuf(int granularity = 4096) : m_hb(granularity) {}

  /// Makes the array `count` elements long; new ones are uninitialised. On a failed allocation, or
  /// a count whose bytes an int cannot hold, the array stays as it was.
  T* Resize(int count, bool allow_shrink = true) {
    if (count > INT_MAX / static_cast<int>(sizeof(T))) return Get();
    if (count < 0) count = 0;
    return static_cast<T*>(m_hb.Resize(count * static_cast<int>(sizeof(T)), allow_shrink));
  }
  int GetSize() const { return m_hb.GetSize() / static_cast<int>(sizeof(T)); }
  /// Null when empty.
  T* Get() const { return static_cast<T*>(m_hb.Get()); }
  /// Appends one element; false when memory ran out.
  bool Add(T value) {
    const int count = GetSize();
    Resize(count + 1, false);
    if (GetSize() != count + 1) return false;
    Get()[count] = value;
    return true;
  }
  /// Frees the block.
  void Release() { m_hb.Release(); }

 private:
  YDK_HeapBuf m_hb;
};
