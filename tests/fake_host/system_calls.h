// The file calls of the process, which a test may make fail. Link `fake_host_faults` for them.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace fake_host {

enum class SystemCall { kOpen, kFlock, kFtruncate, kFstat, kPwrite };

/// While it lives the process's calls of open, flock, ftruncate, fstat and pwrite go through its
/// script. One at a time; calls are counted from 1 at construction.
class SystemCallScript {
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
  ~SystemCallScript();
  SystemCallScript(const SystemCallScript&) = delete;
  SystemCallScript& operator=(const SystemCallScript&) = delete;

  /// The `nth` call fails with `error`.
  void FailAt(SystemCall call, int nth, int error) { failures_[{call, nth}] = error; }
  /// The `nth` call and every later one fail with `error`.
  void FailFrom(SystemCall call, int nth, int error) { failures_from_[call] = {nth, error}; }
  /// The `nth` pwrite takes only the first `bytes`.
  void ShortenWrite(int nth, int64_t bytes) { short_writes_[nth] = bytes; }
  /// Writes to files of this ending succeed without reaching the disk.
  void SwallowWritesTo(const std::string& ending) { swallowed_ending_ = ending; }
  int Count(SystemCall call) const;

  std::vector<Open> opens;
  std::vector<int> flock_operations;
  std::vector<Pwrite> pwrites;

 private:
  friend struct ScriptedCalls;
  int NextError(SystemCall call);
  bool Swallows(int fd) const;

  std::map<SystemCall, int> counts_;
  std::map<std::pair<SystemCall, int>, int> failures_;
  std::map<SystemCall, std::pair<int, int>> failures_from_;
  std::map<int, int64_t> short_writes_;
  std::string swallowed_ending_;
};

}  // namespace fake_host
