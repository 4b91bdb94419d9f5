// Every call that a process makes to the system, whichever library makes it, counted and made to
// fail. What `SystemCalls` sees by name, this sees where the process meets the kernel: also what
// the C library does for a stream, a folder or the loader.
#pragma once

#include <atomic>

#include "tests/kit/faults/system_calls.h"

namespace test_kit {

/// What the calls of a process are to meet, and what has become of them. Shared between the process
/// and whoever waits for its end: `SharedCallTrap` holds one.
struct CallTrap {
  int nth = 0;  ///< the call that fails, counted from 1; 0: none
  Times times = Times::kOnce;
  int error = 0;  ///< of the calls that concern files; those for memory fail with ENOMEM
  std::atomic<int> calls{0};     ///< calls made so far
  std::atomic<long> failed{-1};  ///< the system's number of the first call that failed
};

/// A `CallTrap` that a child process shares with the process that makes it.
class SharedCallTrap {
 public:
  SharedCallTrap();
  ~SharedCallTrap();
  SharedCallTrap(const SharedCallTrap&) = delete;
  SharedCallTrap& operator=(const SharedCallTrap&) = delete;
  CallTrap* operator->() const { return m_trap; }
  CallTrap& operator*() const { return *m_trap; }

 private:
  CallTrap* m_trap;
};

/// From here to its end every call of this process, and of the threads that it makes, that the
/// system can refuse goes through `trap`. There is no way back: it is for a child process. A close
/// and an unmapping that fail are carried out all the same, as the system does. Calls from within
/// the program's own file are let through: they are the tests' and a sanitizer's. Throws
/// `std::runtime_error` when the system has no traps.
void trapSystemCalls(CallTrap& trap);

}  // namespace test_kit
