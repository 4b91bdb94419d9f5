// The kit's own promise: a loop over n meets every call once, and what fails is counted.
#include "tests/kit/faults/system_calls.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/kit/faults/live_blocks.h"
#include "tests/kit/scratch_folder.h"
#include "tests/kit/whole_files.h"

namespace test_kit {
namespace {

/// One allocation of each kind, in order; how many were refused.
int allocateOnceEach() {
  int refused = 0;
  void* volatile none = nullptr;  // so that the compiler makes no malloc of the realloc
  void* blocks[] = {std::malloc(10), std::calloc(2, 5), std::realloc(none, 10), strdup("text"),
                    ::operator new(10, std::nothrow)};
  for (void* block : blocks) {
    refused += block == nullptr ? 1 : 0;
    std::free(block);
  }
  return refused;
}

TEST(WatchedMemory, EachKindIsCounted) {
  SystemCalls calls;
  EXPECT_EQ(allocateOnceEach(), 0);
  const int all = calls.allocations();
  const int each[] = {calls.count(Call::kMalloc), calls.count(Call::kCalloc),
                      calls.count(Call::kRealloc), calls.count(Call::kStrdup),
                      calls.count(Call::kNew)};
  for (const int count : each) EXPECT_EQ(count, 1);
  EXPECT_EQ(all, 5);
}

TEST(WatchedMemory, ALoopOverNFailsEachAllocationOnceUntilARunPasses) {
  int runs = 0;
  for (int n = 1;; ++n) {
    SystemCalls calls;
    calls.failAllocation(n, Times::kOnce);
    const int refused = allocateOnceEach();
    if (calls.allocations() < n) {
      EXPECT_EQ(refused, 0);
      break;
    }
    EXPECT_EQ(refused, 1) << n;
    ++runs;
  }
  EXPECT_EQ(runs, 5);
}

TEST(WatchedMemory, FromThenOnEveryAllocationFails) {
  for (int n = 1; n <= 6; ++n) {
    SystemCalls calls;
    calls.failAllocation(n, Times::kFromThenOn);
    EXPECT_EQ(allocateOnceEach(), 6 - n) << n;
  }
}

TEST(WatchedMemory, ARefusedNewThrows) {
  SystemCalls calls;
  calls.failAt(Call::kNew, 1, ENOMEM);
  void* block = nullptr;
  bool thrown = false;
  try {
    block = ::operator new(10);
  } catch (const std::bad_alloc&) {
    thrown = true;
  }
  ::operator delete(block);
  EXPECT_TRUE(thrown);
}

TEST(WatchedMemory, ABlockIsLiveUntilItIsGivenBack) {
  const int before = liveBlocks();
  SystemCalls calls;
  void* block = std::malloc(10);
  EXPECT_EQ(liveBlocks(), before + 1);
  block = std::realloc(block, 100000);
  EXPECT_EQ(liveBlocks(), before + 1) << "moved, and still one";
  calls.failFrom(Call::kRealloc, 1, ENOMEM);
  void* const moved = std::realloc(block, 200000);
  EXPECT_EQ(moved, nullptr);
  EXPECT_EQ(liveBlocks(), before + 1) << "kept where it was";
  std::free(moved == nullptr ? block : moved);
  EXPECT_EQ(liveBlocks(), before);
}

TEST(WatchedMemory, BlocksOfThePastAreForgotten) {
  const int before = liveBlocks();
  const SystemCalls calls;
  for (int i = 0; i < 200000; ++i) std::free(std::malloc(16 + static_cast<size_t>(i % 64)));
  EXPECT_EQ(liveBlocks(), before);
}

TEST(WatchedSystem, ALoopOverNFailsEachCallOnceUntilARunPasses) {
  const ScratchFolder folder;
  const std::string path = folder.file("file");
  int runs = 0;
  for (int n = 1;; ++n) {
    SystemCalls calls;
    calls.failSystemCall(n, Times::kOnce, EIO);
    int failed = 0;
    const int fd = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    failed += fd < 0 ? 1 : 0;
    failed += fd >= 0 && flock(fd, LOCK_EX) != 0 ? 1 : 0;
    failed += fd >= 0 && ftruncate(fd, 4) != 0 ? 1 : 0;
    failed += fd >= 0 && pwrite(fd, "abcd", 4, 0) != 4 ? 1 : 0;
    failed += fd >= 0 && close(fd) != 0 ? 1 : 0;
    failed += unlink(path.c_str()) != 0 && errno != ENOENT ? 1 : 0;
    const bool passed = calls.systemCallCount() < n;
    EXPECT_EQ(failed, passed ? 0 : 1) << n;
    if (passed) break;
    ++runs;
  }
  EXPECT_EQ(runs, 6);
}

TEST(WatchedMemory, WhatALibraryTakesForItselfIsNotCounted) {
  const ScratchFolder folder;
  const std::string path = folder.file("file");
  SystemCalls calls;
  std::FILE* stream = std::fopen(path.c_str(), "w");
  ASSERT_NE(stream, nullptr);
  std::fclose(stream);
  EXPECT_EQ(calls.count(Call::kMalloc), 0) << "the stream's own memory";
}

TEST(WatchedSystem, SwallowedWritesSucceedAndLeaveTheFileEmpty) {
  const ScratchFolder folder;
  const std::string path = folder.file("disc.bin");
  {
    SystemCalls calls;
    calls.swallowWritesTo(".bin");
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    EXPECT_EQ(pwrite(fd, "abcd", 4, 0), 4);
    close(fd);
  }
  EXPECT_EQ(readFile(path), "");
}

}  // namespace
}  // namespace test_kit
