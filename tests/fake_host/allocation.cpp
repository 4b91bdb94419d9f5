#include "tests/fake_host/allocation.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <new>

#include "tests/fake_host/plugin_host.h"

#if defined(__SANITIZE_ADDRESS__)
#define FAKE_HOST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define FAKE_HOST_SANITIZED 1
#endif
#endif

#ifdef FAKE_HOST_SANITIZED
extern "C" const char* __asan_default_options();
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1:max_allocation_size_mb=256";
}
#endif

namespace fake_host {

namespace {

bool g_armed = false;
bool g_fired = false;
int g_countdown = 0;

bool refuses() {
  if (!g_armed || inHostCall()) return false;
  if (--g_countdown != 0) return false;
  g_fired = true;
  return true;
}

void* allocateOrThrow(std::size_t size) {
  void* memory = refuses() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void* allocateOrNull(std::size_t size) {
  return refuses() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

#ifndef FAKE_HOST_SANITIZED
size_t mappedBytes() {
  unsigned long pages = 0;
  std::FILE* file = std::fopen("/proc/self/statm", "r");
  if (file == nullptr || std::fscanf(file, "%lu", &pages) != 1) ADD_FAILURE() << "no statm";
  if (file != nullptr) std::fclose(file);
  return pages * 4096;
}
#endif

}  // namespace

FailingAllocation::FailingAllocation(int nth) {
  g_armed = true;
  g_fired = false;
  g_countdown = nth;
}

FailingAllocation::~FailingAllocation() {
  g_armed = false;
}

bool FailingAllocation::fired() const {
  return g_fired;
}

MemoryLimit::MemoryLimit(size_t bytes) {
#ifndef FAKE_HOST_SANITIZED
  rlimit limit = {};
  getrlimit(RLIMIT_AS, &limit);
  m_former = limit.rlim_cur;
  limit.rlim_cur = mappedBytes() + bytes;
  if (setrlimit(RLIMIT_AS, &limit) != 0) ADD_FAILURE() << "cannot limit the memory";
#else
  (void)bytes;
#endif
}

MemoryLimit::~MemoryLimit() {
#ifndef FAKE_HOST_SANITIZED
  rlimit limit = {};
  getrlimit(RLIMIT_AS, &limit);
  limit.rlim_cur = m_former;
  setrlimit(RLIMIT_AS, &limit);
#endif
}

}  // namespace fake_host

void* operator new(std::size_t size) {
  return fake_host::allocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return fake_host::allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return fake_host::allocateOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return fake_host::allocateOrNull(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
