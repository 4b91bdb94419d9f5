// One call of the allocator or the system on its way through those who watch.
#pragma once

#include <cerrno>
#include <utility>

#include "tests/kit/faults/system_calls.h"

namespace test_kit {

/// Made at the beginning of a call, before it does anything.
class WatchedCall {
 public:
  /// `caller` is the address that the call returns to. For operator new it may lie in the C++
  /// library, whose strings take their memory on behalf of the code that uses them.
  WatchedCall(Call call, const void* caller);
  WatchedCall(const WatchedCall&) = delete;
  WatchedCall& operator=(const WatchedCall&) = delete;

  /// The call is about this file. The text outlives it.
  void concerns(const char* path) { m_path = path; }
  bool isWatched() const { return m_watched; }
  /// The error with which the call fails, 0 for none.
  int error() const { return m_error; }
  /// The bytes that a transfer of `wanted` bytes may move.
  size_t allowed(size_t wanted) const;
  /// Whether a write to `fd` is to stay away from the disk.
  bool swallowed(int fd) const;
  /// The file system type to tell instead of `real`.
  int64_t fileSystem(int64_t real) const;
  /// Hands what became of the call to those who watch. Keeps errno.
  void record(CallRecord record) const;

  /// The call's answer: -1 and errno when it fails, otherwise what `real` answers.
  template <typename Real>
  int64_t run(CallRecord about, Real real) const {
    if (m_error != 0) errno = m_error;
    const int64_t result = m_error != 0 ? -1 : static_cast<int64_t>(real());
    if (!m_watched) return result;
    about.result = result;
    record(std::move(about));
    return result;
  }

 private:
  Call m_call;
  const void* m_caller;
  const char* m_path = nullptr;
  bool m_watched;
  int m_error = 0;
};

}  // namespace test_kit
