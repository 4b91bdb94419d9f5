// Watches the calls that the classes under test make to the allocator and the system, and lets
// chosen ones fail.
//
// The program is linked with `--wrap` for every call named here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace support_test {

enum class Call {
  kMalloc,
  kRealloc,
  kStrdup,
  kOpen,
  kFlock,
  kFtruncate,
  kFstat,
  kFstatfs,
  kPwrite,
  kPread,
  kLseek,
  kFcntl,
  kFadvise,
};
inline constexpr int kCallKinds = static_cast<int>(Call::kFadvise) + 1;

/// One call that was made. `size` is the byte count of malloc, realloc, pwrite and pread, the flags
/// of open, the operation of flock, the command of fcntl and the advice of posix_fadvise; `length`
/// is the length given to posix_fadvise, the memory's address for pwrite and pread.
struct CallRecord {
  int64_t size;
  int64_t offset;
  int64_t length;
  int64_t result;
};

/// Records while it lives; one at a time, one thread. Nothing in here allocates while a call is
/// being watched.
class SystemCalls {
 public:
  SystemCalls();
  ~SystemCalls();
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;

  /// Calls `first` to `last` of a kind (counted from 1 since construction or `Forget`) fail with
  /// `error`, without reaching the system.
  void fail(Call call, int error, int first = 1, int last = 1 << 30);
  /// The `nth` pwrite or pread transfers at most `bytes` bytes.
  void shorten(Call call, int nth, int64_t bytes);
  /// Every fstatfs tells of this file system type.
  void pretendFileSystem(uint32_t magic) { m_file_system = magic; }
  /// Forgets what was recorded; scripts stay and count anew.
  void forget();

  int count(Call call) const { return m_kinds[static_cast<int>(call)].count; }
  /// Calls that took memory or changed its size.
  int allocationCount() const { return count(Call::kMalloc) + count(Call::kRealloc); }
  /// The first calls of a kind, as many as are kept.
  std::vector<CallRecord> records(Call call) const;
  CallRecord last(Call call) const;
  /// Calls of any kind that reach the system (not the allocator).
  int systemCallCount() const;

  // For the wrapped functions only.
  struct Script {
    int count = 0;
    int fail_first = 0;
    int fail_last = -1;
    int error = 0;
    int short_nth = 0;
    int64_t short_bytes = 0;
  };
  static constexpr int kKept = 4096;
  /// Counts one call; null when it goes through, else the script by which it fails.
  const Script* enter(Call call);
  void record(Call call, const CallRecord& record);
  static SystemCalls* active();
  const Script& script(Call call) const { return m_kinds[static_cast<int>(call)]; }
  uint32_t fileSystem() const { return m_file_system; }

 private:
  Script m_kinds[kCallKinds];
  struct Kept {
    Call call;
    CallRecord record;
  };
  Kept m_kept[kKept];
  int m_kept_count = 0;
  uint32_t m_file_system = 0;
};

}  // namespace support_test
