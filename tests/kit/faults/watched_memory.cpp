// The allocator's functions, watched.
#include <cstdlib>
#include <cstring>
#include <new>

#include "tests/kit/faults/live_blocks.h"
#include "tests/kit/faults/real_memory.h"
#include "tests/kit/faults/watched_call.h"

namespace test_kit {

namespace {

template <typename Real>
void* allocate(Call call, size_t size, const void* caller, Real real) {
  const WatchedCall watched(call, caller);
  void* block = nullptr;
  watched.run({.size = static_cast<int64_t>(size)}, [&] {
    block = real();
    return block != nullptr ? 1 : 0;
  });
  if (watched.isWatched() && block != nullptr) noteTaken(block);
  return block;
}

void* allocateForNew(size_t size, const void* caller) {
  return allocate(Call::kNew, size, caller, [&] { return realMalloc(size == 0 ? 1 : size); });
}

void* allocateOrThrow(size_t size, const void* caller) {
  void* block = allocateForNew(size, caller);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

}  // namespace test_kit

using namespace test_kit;  // NOLINT: the definitions below must lie outside

extern "C" {

void* malloc(size_t size) noexcept {
  return allocate(Call::kMalloc, size, __builtin_return_address(0),
                  [&] { return realMalloc(size); });
}

void* calloc(size_t count, size_t size) noexcept {
  return allocate(Call::kCalloc, count * size, __builtin_return_address(0),
                  [&] { return realCalloc(count, size); });
}

void* realloc(void* block, size_t size) noexcept {
  return allocate(Call::kRealloc, size, __builtin_return_address(0), [&] {
    // Noted before the block is anybody's: another thread may get its address at once.
    const bool was_live = noteGivenBack(block);
    void* const moved = realRealloc(block, size);
    if (moved == nullptr && size != 0 && was_live) noteTaken(block);
    return moved;
  });
}

void free(void* block) noexcept {
  noteGivenBack(block);
  realFree(block);
}

char* strdup(const char* text) noexcept {
  const size_t size = std::strlen(text) + 1;
  void* copy =
      allocate(Call::kStrdup, size, __builtin_return_address(0), [&] { return realMalloc(size); });
  return copy != nullptr ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}

}  // extern "C"

void* operator new(size_t size) {
  return allocateOrThrow(size, __builtin_return_address(0));
}
void* operator new[](size_t size) {
  return allocateOrThrow(size, __builtin_return_address(0));
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  return allocateForNew(size, __builtin_return_address(0));
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
  return allocateForNew(size, __builtin_return_address(0));
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
