// Memory that runs out on request. Link `fake_host_faults` for it.
#pragma once

#include <cstddef>

namespace fake_host {

/// While it lives the `nth` allocation through `operator new` (counted from 1 at construction, the
/// host's own left out) fails: the throwing forms throw, the others return null.
class FailingAllocation {
 public:
  explicit FailingAllocation(int nth);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;

  /// Whether the allocation came to pass and was refused.
  bool fired() const;
};

/// While it lives the process cannot map much more than `bytes` beyond what it has. Where the
/// address space cannot be limited (sanitizers), single requests over 256 MiB fail anyway.
class MemoryLimit {
 public:
  explicit MemoryLimit(size_t bytes);
  ~MemoryLimit();
  MemoryLimit(const MemoryLimit&) = delete;
  MemoryLimit& operator=(const MemoryLimit&) = delete;

 private:
  size_t m_former = 0;
};

}  // namespace fake_host
