// The trap's own promise: it meets what the C library does for itself, in every thread.
#include "tests/kit/faults/trapped_calls.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <thread>

#include "tests/kit/fork.h"
#include "tests/kit/scratch_folder.h"

namespace test_kit {
namespace {

/// How many of the three steps of writing a stream failed; the last tells where the file is.
int failedStepsOfAStream(const char* path) {
  std::FILE* const stream = std::fopen(path, "w");
  if (stream == nullptr) return 1;
  const bool unwritten = std::fputs("abcd", stream) < 0;
  const bool unclosed = std::fclose(stream) != 0;
  return unwritten || unclosed ? 1 : 0;
}

/// The status of a child in whose process the trap holds.
template <typename Body>
int inTrap(CallTrap& trap, Body body) {
  return waitFor(forkInto([&] {
    trapSystemCalls(trap);
    return body();
  }));
}

TEST(TrappedCalls, WhatTheCLibraryCallsForAStreamFailsToo) {
  const ScratchFolder folder;
  const std::string path = folder.file("file");
  for (int n = 1;; ++n) {
    const SharedCallTrap trap;
    trap->nth = n;
    trap->error = EIO;
    const int failed = inTrap(*trap, [&] { return failedStepsOfAStream(path.c_str()); });
    if (trap->calls < n) {
      EXPECT_EQ(failed, 0);
      EXPECT_GE(n, 5) << "open, fstat, write and close at least";
      break;
    }
    EXPECT_GE(trap->failed, 0) << n;
    EXPECT_TRUE(failed == 0 || failed == 1) << n << " " << failed;
  }
}

TEST(TrappedCalls, FailFromThenOn) {
  const SharedCallTrap trap;
  trap->nth = 2;
  trap->times = Times::kFromThenOn;
  trap->error = ENOSPC;
  const int status = inTrap(*trap, [] {
    struct stat root {};
    const bool first = ::stat("/", &root) == 0;
    const bool second = ::stat("/", &root) != 0 && errno == ENOSPC;
    const bool third = ::stat("/", &root) != 0 && errno == ENOSPC;
    return first && second && third ? 0 : 1;
  });
  EXPECT_EQ(status, 0);
  EXPECT_EQ(trap->calls, 3);
}

TEST(TrappedCalls, OfOtherThreadsAreMetAsWell) {
  const SharedCallTrap trap;
  const int status = inTrap(*trap, [&] {
    const int before = trap->calls;
    std::thread([] {
      struct stat root {};
      ::stat("/", &root);
    }).join();
    return trap->calls > before ? 0 : 1;
  });
  EXPECT_EQ(status, 0);
}

TEST(TrappedCalls, AFailedCloseHasClosed) {
  const SharedCallTrap trap;
  trap->nth = 1;
  trap->error = EIO;
  const int status = inTrap(*trap, [] {
    const bool failed = ::close(STDIN_FILENO) != 0 && errno == EIO;
    return failed && ::fcntl(STDIN_FILENO, F_GETFD) < 0 ? 0 : 1;
  });
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace test_kit
