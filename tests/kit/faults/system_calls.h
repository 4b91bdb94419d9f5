// Counts the calls that a test's code makes to the allocator and the system, and lets chosen ones
// fail. Link `test_kit_faults`, whose definitions of these functions come before those of the C and
// C++ libraries for the program and for every library that it loads.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace test_kit {

/// The allocator's functions first, then the system's.
enum class Call {
  kMalloc,
  kCalloc,
  kRealloc,
  kStrdup,
  kNew,  ///< every form of operator new
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
  kClose,  ///< closes even where it fails, as the system does
  kUnlink,
  kMunmap,  ///< unmaps even where it fails
  kFsync,   ///< never waits for the disk
};
inline constexpr int kFirstSystemCall = static_cast<int>(Call::kOpen);
inline constexpr int kCallKinds = static_cast<int>(Call::kFsync) + 1;

enum class Times { kOnce, kFromThenOn };

/// One call that was made. `size` is the byte count of allocations, pwrite and pread, the length of
/// ftruncate, the flags of open, the operation of flock, the command of fcntl and the advice of
/// posix_fadvise; `offset` is the mode of open; `length` is the length given to posix_fadvise, the
/// memory's address for pwrite and pread.
struct CallRecord {
  int64_t size = 0;
  int64_t offset = 0;
  int64_t length = 0;
  int64_t result = 0;
  int fd = -1;              ///< of open what it answered
  std::string path = {};    ///< of open
  bool only_zeros = false;  ///< of pwrite: nothing else is written
};

/// A stretch of a library's code.
struct CodeRange {
  uintptr_t from, to;
};

/// Watches while it lives. Several may live at once: each counts every call, and a call fails when
/// one of them says so. What the C and C++ libraries call for themselves is not watched, nor is
/// what happens while `ignored` answers true. Calls may come from several threads; made, scripted,
/// asked and ended by one thread while no other is in a watched call.
class SystemCalls {
 public:
  explicit SystemCalls(bool (*ignored)() = nullptr);
  ~SystemCalls();
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;

  /// Calls `first` to `last` of a kind (counted from 1 since construction or `forget`) fail with
  /// `error`, without reaching the system, and no others of that kind.
  void fail(Call call, int error, int first = 1, int last = kAlways);
  /// Only calls that the loaded library whose path holds `name` makes itself are watched by this
  /// one, from here on.
  void watchOnly(const char* name);
  /// What the loaded libraries whose path holds `name` call for themselves is not watched either,
  /// to the end of the process.
  static void leaveOut(const char* name);
  /// The `nth` call of a kind fails too.
  void failAt(Call call, int nth, int error);
  /// The `nth` call of a kind and every later one fail too.
  void failFrom(Call call, int nth, int error);
  /// The `nth` allocation of any kind fails. For a loop over n until `allocations` stays below n.
  void failAllocation(int nth, Times times);
  /// The same for system calls of any kind.
  void failSystemCall(int nth, Times times, int error);
  /// The `nth` pwrite or pread, and no other of its kind, transfers at most `bytes` bytes.
  void shorten(Call call, int nth, int64_t bytes);
  /// Every fstatfs tells of this file system type.
  void pretendFileSystem(uint32_t magic) { m_file_system = magic; }
  /// Writes to files whose names end so succeed without reaching the disk.
  void swallowWritesTo(const std::string& ending) { m_swallowed_ending = ending; }
  /// Is told of every call.
  void observe(std::function<void(Call, const CallRecord&)> observer);
  /// Forgets what was recorded; what shall fail stays and counts anew.
  void forget();

  int count(Call call) const { return m_counts[static_cast<int>(call)]; }
  /// Calls of malloc, calloc and realloc.
  int allocationCount() const;
  /// Calls of the allocator of any kind.
  int allocations() const { return m_allocations; }
  /// Calls of any kind that reach the system (not the allocator).
  int systemCallCount() const { return m_system_calls; }
  /// The calls of a kind, in order.
  std::vector<CallRecord> records(Call call) const;
  /// The last one; all members -1 when there was none.
  CallRecord last(Call call) const;

 private:
  friend class WatchedCall;
  static constexpr int kAlways = 1 << 30;

  struct Rule {
    int kind;  ///< a `Call`, or one of the groups
    int first, last, error;
  };
  struct Shortening {
    Call call;
    int nth;
    int64_t bytes;
  };
  struct Kept {
    Call call;
    CallRecord record;
  };

  /// Counts the call; the error with which it fails, 0 for none.
  int enter(Call call);
  bool swallows(int fd) const;
  /// Whether a call that returns to `caller` is this one's business.
  bool concerns(const void* caller) const;

  bool (*m_ignored)();
  SystemCalls* m_next;
  int m_counts[kCallKinds] = {};
  int m_allocations = 0;
  int m_system_calls = 0;
  std::vector<CodeRange> m_only;  ///< empty: all code
  std::vector<Rule> m_rules;
  std::vector<Shortening> m_shortenings;
  std::vector<Kept> m_kept;
  std::function<void(Call, const CallRecord&)> m_observer;
  uint32_t m_file_system = 0;
  std::string m_swallowed_ending;
};

}  // namespace test_kit
