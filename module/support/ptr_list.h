// A growable list of pointers.
#pragma once

#include "module/support/typed_buf.h"

/// Pointers in order of addition. The list owns its items only when asked to delete them.
template <class T>
class YDK_PtrList {
 public:
  explicit YDK_PtrList(int granularity = 4096) : m_items(granularity) {}

  /// Appends `item` and returns it, null when memory ran out (the item is then still the caller's).
  T* Add(T* item) { return m_items.Add(item) ? item : nullptr; }
  /// Null when out of range.
  T* Get(int i) const { return i >= 0 && i < GetSize() ? m_items.Get()[i] : nullptr; }
  int GetSize() const { return m_items.GetSize(); }
  /// Empties the list and frees its block; with `delete_items` deletes the items first, the last
  /// one first.
  void Empty(bool delete_items) {
    if (delete_items) {
      for (int i = GetSize() - 1; i >= 0; --i) {
        delete Get(i);
        m_items.Resize(i, false);
      }
    }
    m_items.Release();
  }

 private:
  YDK_TypedBuf<T*> m_items;
};

/// The same, owning its items to the end.
template <class T>
class YDK_OwningPtrList : public YDK_PtrList<T> {
 public:
  using YDK_PtrList<T>::YDK_PtrList;
  ~YDK_OwningPtrList() { this->Empty(true); }
  YDK_OwningPtrList(const YDK_OwningPtrList&) = delete;
  YDK_OwningPtrList& operator=(const YDK_OwningPtrList&) = delete;
};
