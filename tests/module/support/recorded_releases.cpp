#include "tests/module/support/recorded_releases.h"

#include <algorithm>

namespace support_test {
namespace {

bool g_recording = false;
std::vector<const void*> g_freed;
std::vector<std::pair<void*, size_t>> g_unmapped;
std::vector<int> g_uncached;

/// Keeps the recording's own blocks out of it.
class Pause {
 public:
  Pause() { g_recording = false; }
  ~Pause() { g_recording = true; }
  Pause(const Pause&) = delete;
  Pause& operator=(const Pause&) = delete;
};

}  // namespace

RecordedReleases::RecordedReleases() {
  g_freed.clear();
  g_unmapped.clear();
  g_uncached.clear();
  g_recording = true;
}

RecordedReleases::~RecordedReleases() {
  g_recording = false;
}

int RecordedReleases::timesFreed(const void* block) {
  return static_cast<int>(std::count(g_freed.begin(), g_freed.end(), block));
}

const std::vector<std::pair<void*, size_t>>& RecordedReleases::unmapped() {
  return g_unmapped;
}

const std::vector<int>& RecordedReleases::uncached() {
  return g_uncached;
}

extern "C" {
void __real_free(void* block);
void __wrap_free(void* block);
void __wrap_free(void* block) {
  if (g_recording && block) {
    const Pause pause;
    g_freed.push_back(block);
  }
  __real_free(block);
}

int __real_munmap(void* address, size_t length);
int __wrap_munmap(void* address, size_t length);
int __wrap_munmap(void* address, size_t length) {
  if (g_recording) {
    const Pause pause;
    g_unmapped.emplace_back(address, length);
  }
  return __real_munmap(address, length);
}

void __real_platformDisableWriteCache(int fd);
void __wrap_platformDisableWriteCache(int fd);
void __wrap_platformDisableWriteCache(int fd) {
  if (g_recording) {
    const Pause pause;
    g_uncached.push_back(fd);
  }
  __real_platformDisableWriteCache(fd);
}
}

}  // namespace support_test
