// An address space that ends soon.
#pragma once

#include <cstddef>

namespace test_kit {

/// While it lives the process cannot map much more than `bytes` beyond what it has. A sanitizer
/// needs the address space for itself: there single requests over 256 MiB fail instead, in every
/// program that links this.
class MemoryLimit {
 public:
  explicit MemoryLimit(size_t bytes);
  ~MemoryLimit();
  MemoryLimit(const MemoryLimit&) = delete;
  MemoryLimit& operator=(const MemoryLimit&) = delete;

 private:
  size_t m_former = 0;
};

}  // namespace test_kit
