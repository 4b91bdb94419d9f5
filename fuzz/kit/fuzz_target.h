// What every fuzz target is: bytes that somebody else wrote, and statements that must hold of
// whatever they cause.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

/// Runs one input; defined by each target. 0: the input may join the corpus.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace fuzz {

inline std::string_view textOf(const uint8_t* data, size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Ends the process, which is what a fuzzer takes for a finding, unless `holds`. `statement` says
/// what must be true.
inline void require(bool holds, const char* statement) {
  if (holds) return;
  const std::string line = std::string("\nfuzz: this does not hold: ") + statement + "\n";
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
  abort();
}

}  // namespace fuzz
