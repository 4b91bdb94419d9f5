#include "tests/kit/faults/system_calls.h"

#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "tests/kit/faults/watched_call.h"

namespace test_kit {

namespace {

/// Rules for calls of any kind stand beside those for one `Call`.
constexpr int kAnyAllocation = kCallKinds;
constexpr int kAnySystemCall = kCallKinds + 1;

SystemCalls* g_watching = nullptr;
/// Held while watchers count or keep a call.
std::mutex g_watchers;
/// What a watcher calls to do its work is not watched.
thread_local bool g_inside = false;

/// Of libraries that are not watched: the C and C++ libraries, found when the first watcher is
/// made, and those that tests leave out.
std::vector<CodeRange> g_left_out;

struct NamedCode {
  const char* name;
  std::vector<CodeRange>& ranges;
};

/// Adds the code of `library` when its path holds the name.
int addNamed(dl_phdr_info* library, size_t /*size*/, void* named) {
  const auto& wanted = *static_cast<const NamedCode*>(named);
  if (std::strstr(library->dlpi_name, wanted.name) == nullptr) return 0;
  for (int i = 0; i < library->dlpi_phnum; ++i) {
    const ElfW(Phdr)& segment = library->dlpi_phdr[i];
    if (segment.p_type != PT_LOAD || (segment.p_flags & PF_X) == 0) continue;
    const uintptr_t from = library->dlpi_addr + segment.p_vaddr;
    wanted.ranges.push_back({from, from + segment.p_memsz});
  }
  return 0;
}

void addCodeNamed(const char* name, std::vector<CodeRange>& ranges) {
  NamedCode wanted{name, ranges};
  ::dl_iterate_phdr(&addNamed, &wanted);
}

bool liesIn(const std::vector<CodeRange>& ranges, const void* address) {
  const auto at = reinterpret_cast<uintptr_t>(address);
  return std::any_of(ranges.begin(), ranges.end(),
                     [at](const CodeRange& range) { return at >= range.from && at < range.to; });
}

bool isAllocation(Call call) {
  return static_cast<int>(call) < kFirstSystemCall;
}

/// Guards a watcher's own work.
class Inside {
 public:
  Inside() : m_before(std::exchange(g_inside, true)), m_errno(errno) {}
  ~Inside() {
    g_inside = m_before;
    errno = m_errno;
  }
  Inside(const Inside&) = delete;
  Inside& operator=(const Inside&) = delete;

 private:
  bool m_before;
  int m_errno;
};

}  // namespace

SystemCalls::SystemCalls(bool (*ignored)()) : m_ignored(ignored), m_next(g_watching) {
  const Inside inside;
  if (g_left_out.empty()) {
    for (const char* const name :
         {"/libc.so", "/libstdc++.so", "/libgcc_s.so", "/libm.so", "/ld-linux"}) {
      addCodeNamed(name, g_left_out);
    }
  }
  g_watching = this;
}

SystemCalls::~SystemCalls() {
  SystemCalls** link = &g_watching;
  while (*link != this) link = &(*link)->m_next;
  *link = m_next;
}

void SystemCalls::fail(Call call, int error, int first, int last) {
  const Inside inside;
  const int kind = static_cast<int>(call);
  std::erase_if(m_rules, [kind](const Rule& rule) { return rule.kind == kind; });
  m_rules.push_back({kind, first, last, error});
}

void SystemCalls::failAt(Call call, int nth, int error) {
  const Inside inside;
  m_rules.push_back({static_cast<int>(call), nth, nth, error});
}

void SystemCalls::failFrom(Call call, int nth, int error) {
  const Inside inside;
  m_rules.push_back({static_cast<int>(call), nth, kAlways, error});
}

void SystemCalls::failAllocation(int nth, Times times) {
  const Inside inside;
  m_rules.push_back({kAnyAllocation, nth, times == Times::kOnce ? nth : kAlways, ENOMEM});
}

void SystemCalls::failSystemCall(int nth, Times times, int error) {
  const Inside inside;
  m_rules.push_back({kAnySystemCall, nth, times == Times::kOnce ? nth : kAlways, error});
}

void SystemCalls::leaveOut(const char* name) {
  const Inside inside;
  addCodeNamed(name, g_left_out);
}

void SystemCalls::watchOnly(const char* name) {
  const Inside inside;
  addCodeNamed(name, m_only);
  if (m_only.empty()) throw std::runtime_error(std::string("no library is loaded from ") + name);
}

bool SystemCalls::concerns(const void* caller) const {
  if (m_ignored != nullptr && m_ignored()) return false;
  return m_only.empty() || liesIn(m_only, caller);
}

void SystemCalls::shorten(Call call, int nth, int64_t bytes) {
  const Inside inside;
  std::erase_if(m_shortenings, [call](const Shortening& each) { return each.call == call; });
  m_shortenings.push_back({call, nth, bytes});
}

void SystemCalls::observe(std::function<void(Call, const CallRecord&)> observer) {
  const Inside inside;
  m_observer = std::move(observer);
}

void SystemCalls::forget() {
  std::fill(std::begin(m_counts), std::end(m_counts), 0);
  m_allocations = 0;
  m_system_calls = 0;
  m_kept.clear();
}

int SystemCalls::allocationCount() const {
  return count(Call::kMalloc) + count(Call::kCalloc) + count(Call::kRealloc);
}

std::vector<CallRecord> SystemCalls::records(Call call) const {
  const Inside inside;
  std::vector<CallRecord> found;
  for (const Kept& kept : m_kept) {
    if (kept.call == call) found.push_back(kept.record);
  }
  return found;
}

CallRecord SystemCalls::last(Call call) const {
  const std::vector<CallRecord> all = records(call);
  return all.empty() ? CallRecord{-1, -1, -1, -1} : all.back();
}

int SystemCalls::enter(Call call) {
  const int kind = static_cast<int>(call);
  const int nth = ++m_counts[kind];
  const int nth_of_group = isAllocation(call) ? ++m_allocations : ++m_system_calls;
  const int group = isAllocation(call) ? kAnyAllocation : kAnySystemCall;
  for (const Rule& rule : m_rules) {
    const int place = rule.kind == kind ? nth : rule.kind == group ? nth_of_group : 0;
    if (place >= 1 && place >= rule.first && place <= rule.last) return rule.error;
  }
  return 0;
}

bool SystemCalls::swallows(int fd) const {
  if (m_swallowed_ending.empty()) return false;
  std::array<char, PATH_MAX> path{};
  const std::string link = "/proc/self/fd/" + std::to_string(fd);
  const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
  return length > 0 &&
         std::string(path.data(), static_cast<size_t>(length)).ends_with(m_swallowed_ending);
}

WatchedCall::WatchedCall(Call call, const void* caller)
    : m_call(call),
      m_caller(caller),
      m_watched(g_watching != nullptr && !g_inside &&
                (call == Call::kNew || !liesIn(g_left_out, caller))) {
  if (!m_watched) return;
  const Inside inside;
  const std::lock_guard lock(g_watchers);
  m_watched = false;
  for (SystemCalls* each = g_watching; each != nullptr; each = each->m_next) {
    if (!each->concerns(caller)) continue;
    m_watched = true;
    if (const int error = each->enter(call); error != 0) m_error = error;
  }
}

size_t WatchedCall::allowed(size_t wanted) const {
  if (!m_watched) return wanted;
  for (const SystemCalls* each = g_watching; each != nullptr; each = each->m_next) {
    for (const SystemCalls::Shortening& shortening : each->m_shortenings) {
      if (shortening.call != m_call || shortening.nth != each->count(m_call)) continue;
      wanted = std::min(wanted, static_cast<size_t>(shortening.bytes));
    }
  }
  return wanted;
}

bool WatchedCall::swallowed(int fd) const {
  if (!m_watched) return false;
  const Inside inside;
  for (const SystemCalls* each = g_watching; each != nullptr; each = each->m_next) {
    if (each->swallows(fd)) return true;
  }
  return false;
}

int64_t WatchedCall::fileSystem(int64_t real) const {
  for (const SystemCalls* each = g_watching; m_watched && each != nullptr; each = each->m_next) {
    if (each->m_file_system != 0) return each->m_file_system;
  }
  return real;
}

void WatchedCall::record(CallRecord record) const {
  const Inside inside;
  const std::lock_guard lock(g_watchers);
  if (m_path != nullptr) record.path = m_path;
  if (m_call == Call::kOpen) record.fd = static_cast<int>(record.result);
  for (SystemCalls* each = g_watching; each != nullptr; each = each->m_next) {
    if (!each->concerns(m_caller)) continue;
    each->m_kept.push_back({m_call, record});
    if (each->m_observer) each->m_observer(m_call, record);
  }
}

}  // namespace test_kit
