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
  void failAt(SystemCall call, int nth, int error) { m_failures[{call, nth}] = error; }
  /// The `nth` call and every later one fail with `error`.
  void failFrom(SystemCall call, int nth, int error) { m_failures_from[call] = {nth, error}; }
  /// The `nth` pwrite takes only the first `bytes`.
  void shortenWrite(int nth, int64_t bytes) { m_short_writes[nth] = bytes; }
  /// Writes to files of this ending succeed without reaching the disk.
  void swallowWritesTo(const std::string& ending) { m_swallowed_ending = ending; }
  int count(SystemCall call) const;

  std::vector<Open> opens;
  std::vector<int> flock_operations;
  std::vector<Pwrite> pwrites;

 private:
  friend struct ScriptedCalls;
  int nextError(SystemCall call);
  bool swallows(int fd) const;

  std::map<SystemCall, int> m_counts;
  std::map<std::pair<SystemCall, int>, int> m_failures;
  std::map<SystemCall, std::pair<int, int>> m_failures_from;
  std::map<int, int64_t> m_short_writes;
  std::string m_swallowed_ending;
};

}  // namespace fake_host
