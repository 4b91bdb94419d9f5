#include "tests/fake_host/allocation.h"

#include <cerrno>

#include "tests/fake_host/plugin_host.h"

namespace fake_host {

FailingAllocation::FailingAllocation(int nth) : m_calls(&inHostCall), m_nth(nth) {
  m_calls.failAt(test_kit::Call::kNew, nth, ENOMEM);
}

bool FailingAllocation::fired() const {
  return m_calls.count(test_kit::Call::kNew) >= m_nth;
}

}  // namespace fake_host
