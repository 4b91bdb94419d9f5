// The module's file calls, which a test may make fail. Link `fake_host_faults` for them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/kit/faults/system_calls.h"

namespace fake_host {

using SystemCall = test_kit::Call;

/// `test_kit::SystemCalls`, with what a render does to its files told apart. Calls are counted from
/// 1 at construction.
class SystemCallScript : public test_kit::SystemCalls {
 public:
  struct Open {
    std::string path;
    int flags = 0;
    unsigned mode = 0;
    int fd = -1;
  };
  struct Pwrite {
    int fd = -1;
    int64_t offset = 0;
    int64_t length = 0;
    bool only_zeros = false;
    int64_t result = 0;
  };

  SystemCallScript();

  /// The `nth` pwrite takes only the first `bytes`.
  void shortenWrite(int nth, int64_t bytes) { shorten(SystemCall::kPwrite, nth, bytes); }

  std::vector<Open> opens;  ///< those that were not made to fail
  std::vector<int> flock_operations;
  std::vector<Pwrite> pwrites;

 private:
  void keep(SystemCall call, const test_kit::CallRecord& record);
};

}  // namespace fake_host
