#include "tests/module/support/system_calls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>

namespace support_test {
namespace {

SystemCalls* g_active = nullptr;

/// A call that returns -1 when it fails: scripted failure, or the real call, recorded.
template <class Real>
int64_t run(Call call, CallRecord record, Real real) {
  SystemCalls* calls = SystemCalls::active();
  if (!calls) return real();
  if (const SystemCalls::Script* script = calls->enter(call)) {
    record.result = -1;
    calls->record(call, record);
    errno = script->error;
    return -1;
  }
  record.result = real();
  const int error = errno;
  calls->record(call, record);
  errno = error;
  return record.result;
}

/// The bytes a transfer may move under the script.
size_t allowed(Call call, size_t wanted) {
  const SystemCalls* calls = SystemCalls::active();
  if (!calls) return wanted;
  const SystemCalls::Script& script = calls->script(call);
  if (script.short_nth == 0 || script.count + 1 != script.short_nth) return wanted;
  return std::min(wanted, static_cast<size_t>(script.short_bytes));
}

/// An allocation: scripted failure, or the real one, recorded.
template <class Real>
void* runAllocation(Call call, size_t size, Real real) {
  SystemCalls* calls = SystemCalls::active();
  if (!calls) return real();
  if (calls->enter(call)) {
    calls->record(call, {static_cast<int64_t>(size), 0, 0, 0});
    errno = ENOMEM;
    return nullptr;
  }
  void* block = real();
  calls->record(call, {static_cast<int64_t>(size), 0, 0, block != nullptr});
  return block;
}

}  // namespace

SystemCalls::SystemCalls() {
  g_active = this;
}
SystemCalls::~SystemCalls() {
  g_active = nullptr;
}
SystemCalls* SystemCalls::active() {
  return g_active;
}

void SystemCalls::fail(Call call, int error, int first, int last) {
  Script& script = m_kinds[static_cast<int>(call)];
  script.error = error;
  script.fail_first = first;
  script.fail_last = last;
}

void SystemCalls::shorten(Call call, int nth, int64_t bytes) {
  m_kinds[static_cast<int>(call)].short_nth = nth;
  m_kinds[static_cast<int>(call)].short_bytes = bytes;
}

void SystemCalls::forget() {
  for (Script& script : m_kinds) script.count = 0;
  m_kept_count = 0;
}

const SystemCalls::Script* SystemCalls::enter(Call call) {
  Script& script = m_kinds[static_cast<int>(call)];
  ++script.count;
  const bool fails = script.count >= script.fail_first && script.count <= script.fail_last;
  return fails ? &script : nullptr;
}

void SystemCalls::record(Call call, const CallRecord& record) {
  if (m_kept_count < kKept) m_kept[m_kept_count++] = {call, record};
}

std::vector<CallRecord> SystemCalls::records(Call call) const {
  std::vector<CallRecord> records;
  for (int i = 0; i < m_kept_count; ++i) {
    if (m_kept[i].call == call) records.push_back(m_kept[i].record);
  }
  return records;
}

CallRecord SystemCalls::last(Call call) const {
  const std::vector<CallRecord> made = records(call);
  return made.empty() ? CallRecord{-1, -1, -1, -1} : made.back();
}

int SystemCalls::systemCallCount() const {
  int count = 0;
  for (int kind = static_cast<int>(Call::kOpen); kind < kCallKinds; ++kind) {
    count += m_kinds[kind].count;
  }
  return count;
}

extern "C" {
void* __real_malloc(size_t size);
void* __real_realloc(void* block, size_t size);
char* __real_strdup(const char* text);
int __real_open(const char* path, int flags, ...);
int __real_flock(int fd, int operation);
int __real_ftruncate(int fd, off_t length);
int __real_fstat(int fd, struct stat* status);
int __real_fstatfs(int fd, struct statfs* status);
ssize_t __real_pwrite(int fd, const void* data, size_t size, off_t offset);
ssize_t __real_pread(int fd, void* data, size_t size, off_t offset);
off_t __real_lseek(int fd, off_t offset, int whence);
int __real_fcntl(int fd, int command, ...);
int __real_posix_fadvise(int fd, off_t offset, off_t length, int advice);

void* __wrap_malloc(size_t size);
void* __wrap_realloc(void* block, size_t size);
char* __wrap_strdup(const char* text);
int __wrap_open(const char* path, int flags, ...);
int __wrap_flock(int fd, int operation);
int __wrap_ftruncate(int fd, off_t length);
int __wrap_fstat(int fd, struct stat* status);
int __wrap_fstatfs(int fd, struct statfs* status);
ssize_t __wrap_pwrite(int fd, const void* data, size_t size, off_t offset);
ssize_t __wrap_pread(int fd, void* data, size_t size, off_t offset);
off_t __wrap_lseek(int fd, off_t offset, int whence);
int __wrap_fcntl(int fd, int command, ...);
int __wrap_posix_fadvise(int fd, off_t offset, off_t length, int advice);

void* __wrap_malloc(size_t size) {
  return runAllocation(Call::kMalloc, size, [&] { return __real_malloc(size); });
}

void* __wrap_realloc(void* block, size_t size) {
  return runAllocation(Call::kRealloc, size, [&] { return __real_realloc(block, size); });
}

char* __wrap_strdup(const char* text) {
  return static_cast<char*>(
      runAllocation(Call::kStrdup, 0, [&]() -> void* { return __real_strdup(text); }));
}

int __wrap_open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return static_cast<int>(run(Call::kOpen, {flags, static_cast<int64_t>(mode), 0, 0}, [&] {
    return static_cast<int64_t>(__real_open(path, flags, mode));
  }));
}

int __wrap_flock(int fd, int operation) {
  return static_cast<int>(run(Call::kFlock, {operation, 0, 0, 0},
                              [&] { return static_cast<int64_t>(__real_flock(fd, operation)); }));
}

int __wrap_ftruncate(int fd, off_t length) {
  return static_cast<int>(run(Call::kFtruncate, {length, 0, 0, 0},
                              [&] { return static_cast<int64_t>(__real_ftruncate(fd, length)); }));
}

int __wrap_fstat(int fd, struct stat* status) {
  return static_cast<int>(run(Call::kFstat, {0, 0, 0, 0},
                              [&] { return static_cast<int64_t>(__real_fstat(fd, status)); }));
}

int __wrap_fstatfs(int fd, struct statfs* status) {
  return static_cast<int>(run(Call::kFstatfs, {0, 0, 0, 0}, [&] {
    const int result = __real_fstatfs(fd, status);
    const SystemCalls* calls = SystemCalls::active();
    if (calls && calls->fileSystem() != 0) status->f_type = calls->fileSystem();
    return static_cast<int64_t>(result);
  }));
}

ssize_t __wrap_pwrite(int fd, const void* data, size_t size, off_t offset) {
  const size_t size_now = allowed(Call::kPwrite, size);
  return run(Call::kPwrite,
             {static_cast<int64_t>(size), offset, reinterpret_cast<intptr_t>(data), 0},
             [&] { return static_cast<int64_t>(__real_pwrite(fd, data, size_now, offset)); });
}

ssize_t __wrap_pread(int fd, void* data, size_t size, off_t offset) {
  const size_t size_now = allowed(Call::kPread, size);
  return run(Call::kPread,
             {static_cast<int64_t>(size), offset, reinterpret_cast<intptr_t>(data), 0},
             [&] { return static_cast<int64_t>(__real_pread(fd, data, size_now, offset)); });
}

off_t __wrap_lseek(int fd, off_t offset, int whence) {
  return run(Call::kLseek, {whence, offset, 0, 0},
             [&] { return static_cast<int64_t>(__real_lseek(fd, offset, whence)); });
}

int __wrap_fcntl(int fd, int command, ...) {
  va_list arguments;
  va_start(arguments, command);
  const long argument = va_arg(arguments, long);
  va_end(arguments);
  return static_cast<int>(run(Call::kFcntl, {command, 0, 0, 0}, [&] {
    return static_cast<int64_t>(__real_fcntl(fd, command, argument));
  }));
}

/// Unlike the others it returns the error.
int __wrap_posix_fadvise(int fd, off_t offset, off_t length, int advice) {
  SystemCalls* calls = SystemCalls::active();
  const int64_t result = run(Call::kFadvise, {advice, offset, length, 0}, [&] {
    return static_cast<int64_t>(__real_posix_fadvise(fd, offset, length, advice));
  });
  return result == -1 && calls ? calls->script(Call::kFadvise).error : static_cast<int>(result);
}
}  // extern "C"

}  // namespace support_test
