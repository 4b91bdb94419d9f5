// Maps kept as one array of key/value pairs sorted by key.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "module/support/typed_buf.h"

/// Byte order as unsigned characters: -1, 0 or 1.
int YDK_assocarray_cmpstr(const char* const* a, const char* const* b);
/// The order of `compareIgnoringCase`.
int YDK_assocarray_cmpistr(const char* const* a, const char* const* b);
/// A heap copy, null when memory ran out.
const char* dupstr(const char* s);
void freestr(const char* s);
void freecharptr(char* s);

/// A sorted map searched by bisection; what keys and values need is told by four functions. Not
/// thread-safe; nothing throws: an insertion without memory leaves the array as it was.
template <class K, class V>
class YDK_AssocArrayImpl {
 public:
  using Compare = int (*)(const K* a, const K* b);
  using CopyKey = K (*)(K);
  using FreeKey = void (*)(K);
  using FreeValue = void (*)(V);
  struct KeyVal {
    K key;
    V value;
  };

  /// `compare`: negative, 0, positive. `copy_key` null: keys are stored as given. `free_key`,
  /// `free_value`: may be null.
  explicit YDK_AssocArrayImpl(Compare compare, CopyKey copy_key = nullptr,
                              FreeKey free_key = nullptr, FreeValue free_value = nullptr)
      : m_compare(compare), m_copyKey(copy_key), m_freeKey(free_key), m_freeValue(free_value) {}
  ~YDK_AssocArrayImpl() { Clear(); }
  YDK_AssocArrayImpl(const YDK_AssocArrayImpl&) = delete;
  YDK_AssocArrayImpl& operator=(const YDK_AssocArrayImpl&) = delete;

  int GetSize() const { return m_data.GetSize(); }

  /// The stored value, null when absent; valid until the array changes.
  V* Find(K key) const {
    int at = 0;
    return bisect(key, &at) ? &m_data.Get()[at].value : nullptr;
  }

  /// Sorted insertion, or replacement of the value of a key that exists (its stored key is kept).
  /// False when memory ran out: the value is then still the caller's.
  bool Insert(K key, V val) {
    int at = 0;
    if (bisect(key, &at)) {
      KeyVal& pair = m_data.Get()[at];
      if (m_freeValue) m_freeValue(pair.value);
      pair.value = val;
      return true;
    }
    return place(at, key, val);
  }

  /// Appends without keeping order, for bulk loading; `SortKeys` restores it. Result as `Insert`.
  bool AppendUnsorted(K key, V val) { return place(GetSize(), key, val); }

  /// Sorts, then keeps one pair per key: of equal keys the one that was loaded first.
  void SortKeys() {
    if (GetSize() < 2 || !m_compare) return;
    std::stable_sort(
        m_data.Get(), m_data.Get() + GetSize(),
        [this](const KeyVal& a, const KeyVal& b) { return m_compare(&a.key, &b.key) < 0; });
    RemoveDuplicateKeys();
  }

  /// Keeps the first pair of every run of equal keys.
  void RemoveDuplicateKeys() {
    const int count = GetSize();
    if (count <= 1) return;
    KeyVal* pairs = m_data.Get();
    int kept = 1;
    for (int i = 1; i < count; ++i) {
      if (m_compare(&pairs[i].key, &pairs[kept - 1].key) == 0) {
        dispose(pairs[i]);
        continue;
      }
      if (kept != i) pairs[kept] = pairs[i];
      ++kept;
    }
    if (kept < count) m_data.Resize(kept, false);
  }

  /// Disposes of every key and value in order and frees the block.
  void Clear() {
    if (m_freeKey || m_freeValue) {
      for (int i = 0; i < GetSize(); ++i) dispose(m_data.Get()[i]);
    }
    m_data.Release();
  }

 private:
  bool bisect(K key, int* at) const {
    int lo = 0;
    int hi = GetSize();
    while (lo != hi) {
      const int mid = (lo + hi) / 2;
      const int c = m_compare(&key, &m_data.Get()[mid].key);
      if (c == 0) {
        *at = mid;
        return true;
      }
      if (c < 0) {
        hi = mid;
      } else {
        lo = mid + 1;
      }
    }
    *at = lo;
    return false;
  }

  bool place(int at, K key, V val) {
    const K stored = m_copyKey ? m_copyKey(key) : key;
    if constexpr (std::is_pointer_v<K>) {
      if (m_copyKey && !stored) return false;
    }
    if (!m_data.Add(KeyVal{stored, val})) {
      if (m_copyKey && m_freeKey) m_freeKey(stored);
      return false;
    }
    KeyVal* pairs = m_data.Get();
    const int last = GetSize() - 1;
    if (at < last) {
      memmove(pairs + at + 1, pairs + at, static_cast<size_t>(last - at) * sizeof(KeyVal));
      pairs[at] = KeyVal{stored, val};
    }
    return true;
  }

  void dispose(const KeyVal& pair) const {
    if (m_freeKey) m_freeKey(pair.key);
    if (m_freeValue) m_freeValue(pair.value);
  }

  YDK_TypedBuf<KeyVal> m_data;
  Compare m_compare;
  CopyKey m_copyKey;
  FreeKey m_freeKey;
  FreeValue m_freeValue;
};

/// The same with text keys that the array copies and owns.
template <class V>
class YDK_StringKeyedArray : public YDK_AssocArrayImpl<const char*, V> {
 public:
  explicit YDK_StringKeyedArray(bool case_sensitive = true, void (*free_value)(V) = nullptr)
      : YDK_AssocArrayImpl<const char*, V>(
            case_sensitive ? YDK_assocarray_cmpstr : YDK_assocarray_cmpistr, dupstr, freestr,
            free_value) {}
};
