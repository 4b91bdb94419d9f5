// Memory that runs out on request. Link `fake_host_faults` for it.
#pragma once

#include "tests/kit/faults/memory_limit.h"
#include "tests/kit/faults/system_calls.h"

namespace fake_host {

using test_kit::MemoryLimit;

using test_kit::Times;

/// While it lives the `nth` allocation of any kind (counted from 1 at construction, the host's own
/// left out) fails, or it and every later one: the throwing forms throw, the others return null.
class FailingAllocation {
 public:
  FailingAllocation(int nth, Times times);

  /// Whether the allocation came to pass and was refused.
  bool fired() const;

 private:
  test_kit::SystemCalls m_calls;
  int m_nth;
};

}  // namespace fake_host
