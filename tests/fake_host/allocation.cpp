#include "tests/fake_host/allocation.h"

#include "tests/fake_host/plugin_host.h"

namespace fake_host {

FailingAllocation::FailingAllocation(int nth, Times times) : m_calls(&inHostCall), m_nth(nth) {
  m_calls.failAllocation(nth, times);
}

bool FailingAllocation::fired() const {
  return m_calls.allocations() >= m_nth;
}

}  // namespace fake_host
