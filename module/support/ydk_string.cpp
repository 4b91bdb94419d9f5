#include "module/support/ydk_string.h"

#include <climits>
#include <cstdint>
#include <cstring>

namespace {

int textLength(const char* s, int maxlen) {
  if (!s) return 0;
  const size_t n = maxlen > 0 ? strnlen(s, static_cast<size_t>(maxlen)) : strlen(s);
  return n > INT_MAX ? INT_MAX : static_cast<int>(n);
}

}  // namespace

void YDK_String::Set(const char* s, int maxlen) {
  __doSet(0, s, textLength(s, maxlen), 0);
}

void YDK_String::Append(const char* s, int maxlen) {
  __doSet(GetLength(), s, textLength(s, maxlen), 0);
}

char* YDK_String::Get() {
  if (m_hb.GetSize()) return static_cast<char*>(m_hb.Get());
  static char empty;
  empty = 0;
  return &empty;
}

int YDK_String::GetLength() const {
  return m_hb.GetSize() ? static_cast<int>(strlen(static_cast<const char*>(m_hb.Get()))) : 0;
}

void YDK_String::__doSet(int offset, const char* s, int len, int tail_bytes) {
  if (len < 0 || offset < 0 || tail_bytes < 0) return;
  if (len == 0) {
    if (tail_bytes || offset) return;
    if (auto* text = static_cast<char*>(m_hb.Resize(1, false))) text[0] = 0;
    return;
  }
  const long long wanted = static_cast<long long>(offset) + len + tail_bytes + 1;
  if (wanted > INT_MAX) return;
  const int newsize = static_cast<int>(wanted);
  const int oldsize = m_hb.GetSize();
  if (newsize > oldsize) {
    const auto old_block = reinterpret_cast<uintptr_t>(m_hb.Get());
    const uintptr_t inside = reinterpret_cast<uintptr_t>(s) - old_block;
    auto* block = static_cast<char*>(m_hb.Resize(newsize, false));
    if (m_hb.GetSize() < newsize) return;
    if (old_block && inside < static_cast<uintptr_t>(oldsize)) s = block + inside;
  }
  auto* text = static_cast<char*>(m_hb.Get());
  if (tail_bytes > 0) memmove(text + offset + len, text + offset, static_cast<size_t>(tail_bytes));
  memmove(text + offset, s, static_cast<size_t>(len));
  text[newsize - 1] = 0;
  if (newsize < oldsize) m_hb.Resize(newsize, false);
}
