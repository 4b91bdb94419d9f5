#include "module/support/heap_buf.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int kPage = 4096;
constexpr int kLargestStep = 4 * 1024 * 1024;
// Room for the allocator's own header, so that a page-sized growth fills whole pages.
constexpr int kAllocatorHeader = 96;

constexpr long long downToPage(long long bytes) {
  return bytes & ~static_cast<long long>(kPage - 1);
}

}  // namespace

YDK_HeapBuf::~YDK_HeapBuf() {
  free(m_ptr);
}

void YDK_HeapBuf::Release() {
  free(m_ptr);
  m_ptr = nullptr;
  m_allocated = 0;
  m_used = 0;
}

void* YDK_HeapBuf::Resize(int newsize, bool allow_shrink) {
  newsize = std::max(newsize, 0);
  if (newsize == m_used) return Get();
  if (needsReallocation(newsize, allow_shrink)) {
    if (newsize == 0) {
      Release();
      return nullptr;
    }
    if (!reallocate(newsize)) return Get();
  }
  m_used = newsize;
  return Get();
}

bool YDK_HeapBuf::needsReallocation(int newsize, bool allow_shrink) const {
  long long threshold = 0;
  if (allow_shrink && newsize < m_used) {
    const long long spare = m_allocated - 4LL * m_granularity;
    threshold = std::max(1LL, std::min(spare, static_cast<long long>(m_allocated / 2)));
  }
  return newsize > m_allocated || newsize < threshold;
}

long long YDK_HeapBuf::allocationFor(int newsize) const {
  const long long step = std::max(newsize / 2, m_granularity);
  if (m_granularity < kPage) return newsize + step;
  const long long page_step =
      std::max<long long>(std::min<long long>(downToPage(step), kLargestStep), kPage);
  return downToPage(newsize + page_step + kAllocatorHeader) - kAllocatorHeader;
}

bool YDK_HeapBuf::reallocate(int newsize) {
  const long long wanted = allocationFor(newsize);
  if (wanted == m_allocated) return true;
  // What the size fields cannot hold counts as a failed allocation.
  if (wanted > INT_MAX) return false;
  const auto bytes = static_cast<size_t>(wanted);
  void* block = realloc(m_ptr, bytes);
  if (!block) {
    block = malloc(bytes);
    if (!block) return false;
    const int kept = std::min(m_used, newsize);
    if (kept > 0) memcpy(block, m_ptr, static_cast<size_t>(kept));
    free(m_ptr);
  }
  m_ptr = block;
  m_allocated = static_cast<int>(wanted);
  return true;
}
