#include "tests/kit/faults/real_memory.h"

extern "C" {
// The C library's own names for its allocator.
void* __libc_malloc(size_t size) noexcept;
void* __libc_calloc(size_t count, size_t size) noexcept;
void* __libc_realloc(void* block, size_t size) noexcept;
void __libc_free(void* block) noexcept;
// A sanitizer's, in programs that are built with one: there the C library's must not be met.
void* __interceptor_malloc(size_t size) __attribute__((weak));
void* __interceptor_calloc(size_t count, size_t size) __attribute__((weak));
void* __interceptor_realloc(void* block, size_t size) __attribute__((weak));
void __interceptor_free(void* block) __attribute__((weak));
}

namespace test_kit {

void* realMalloc(size_t size) {
  return __interceptor_malloc != nullptr ? __interceptor_malloc(size) : __libc_malloc(size);
}

void* realCalloc(size_t count, size_t size) {
  return __interceptor_calloc != nullptr ? __interceptor_calloc(count, size)
                                         : __libc_calloc(count, size);
}

void* realRealloc(void* block, size_t size) {
  return __interceptor_realloc != nullptr ? __interceptor_realloc(block, size)
                                          : __libc_realloc(block, size);
}

void realFree(void* block) {
  if (__interceptor_free != nullptr) {
    __interceptor_free(block);
  } else {
    __libc_free(block);
  }
}

}  // namespace test_kit
