#include "tests/kit/faults/memory_limit.h"

#include <sys/resource.h>

#include <fstream>
#include <stdexcept>

// Asked for by the address sanitizer when it starts; nobody else calls it.
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1:max_allocation_size_mb=256";
}

namespace test_kit {

namespace {

constexpr bool kSanitized = VELMOR_SANITIZED;

size_t mappedBytes() {
  size_t pages = 0;
  if (!(std::ifstream("/proc/self/statm") >> pages)) throw std::runtime_error("no statm");
  return pages * 4096;
}

void limitTo(size_t bytes) {
  rlimit limit{};
  ::getrlimit(RLIMIT_AS, &limit);
  limit.rlim_cur = bytes;
  if (::setrlimit(RLIMIT_AS, &limit) != 0) throw std::runtime_error("cannot limit the memory");
}

}  // namespace

MemoryLimit::MemoryLimit(size_t bytes) {
  if (kSanitized) return;
  rlimit limit{};
  ::getrlimit(RLIMIT_AS, &limit);
  m_former = limit.rlim_cur;
  limitTo(mappedBytes() + bytes);
}

MemoryLimit::~MemoryLimit() {
  if (!kSanitized) limitTo(m_former);
}

}  // namespace test_kit
