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

bool armed = false;
bool fired = false;
int countdown = 0;

bool Refuses() {
  if (!armed || InHostCall()) return false;
  if (--countdown != 0) return false;
  fired = true;
  return true;
}

void* AllocateOrThrow(std::size_t size) {
  void* memory = Refuses() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void* AllocateOrNull(std::size_t size) {
  return Refuses() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

#ifndef FAKE_HOST_SANITIZED
size_t MappedBytes() {
  unsigned long pages = 0;
  std::FILE* file = std::fopen("/proc/self/statm", "r");
  if (file == nullptr || std::fscanf(file, "%lu", &pages) != 1) ADD_FAILURE() << "no statm";
  if (file != nullptr) std::fclose(file);
  return pages * 4096;
}
#endif

}  // namespace

FailingAllocation::FailingAllocation(int nth) {
  armed = true;
  fired = false;
  countdown = nth;
}

FailingAllocation::~FailingAllocation() {
  armed = false;
}

bool FailingAllocation::Fired() const {
  return fired;
}

MemoryLimit::MemoryLimit(size_t bytes) {
#ifndef FAKE_HOST_SANITIZED
  rlimit limit = {};
  getrlimit(RLIMIT_AS, &limit);
  former_ = limit.rlim_cur;
  limit.rlim_cur = MappedBytes() + bytes;
  if (setrlimit(RLIMIT_AS, &limit) != 0) ADD_FAILURE() << "cannot limit the memory";
#else
  (void)bytes;
#endif
}

MemoryLimit::~MemoryLimit() {
#ifndef FAKE_HOST_SANITIZED
  rlimit limit = {};
  getrlimit(RLIMIT_AS, &limit);
  limit.rlim_cur = former_;
  setrlimit(RLIMIT_AS, &limit);
#endif
}

}  // namespace fake_host

void* operator new(std::size_t size) {
  return fake_host::AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return fake_host::AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return fake_host::AllocateOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return fake_host::AllocateOrNull(size);
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
