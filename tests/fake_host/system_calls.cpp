#include "tests/fake_host/system_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <utility>

namespace fake_host {

namespace {

SystemCallScript* g_current_script = nullptr;

template <class Function>
Function realFunction(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

bool onlyZeros(const void* data, size_t size) {
  const auto* bytes = static_cast<const char*>(data);
  return size == 0 || (bytes[0] == 0 && std::memcmp(bytes, bytes + 1, size - 1) == 0);
}

}  // namespace

SystemCallScript::SystemCallScript() {
  if (g_current_script != nullptr) ADD_FAILURE() << "two scripts for the system calls";
  g_current_script = this;
}

SystemCallScript::~SystemCallScript() {
  g_current_script = nullptr;
}

int SystemCallScript::count(SystemCall call) const {
  const auto found = m_counts.find(call);
  return found == m_counts.end() ? 0 : found->second;
}

int SystemCallScript::nextError(SystemCall call) {
  const int nth = ++m_counts[call];
  if (const auto at = m_failures.find({call, nth}); at != m_failures.end()) return at->second;
  const auto from = m_failures_from.find(call);
  return from != m_failures_from.end() && nth >= from->second.first ? from->second.second : 0;
}

bool SystemCallScript::swallows(int fd) const {
  if (m_swallowed_ending.empty()) return false;
  for (auto open = opens.rbegin(); open != opens.rend(); ++open) {
    if (open->fd == fd) return open->path.ends_with(m_swallowed_ending);
  }
  return false;
}

struct ScriptedCalls {
  using OpenFn = int (*)(const char*, int, ...);
  using PwriteFn = ssize_t (*)(int, const void*, size_t, off_t);

  static int open(const char* path, int flags, unsigned mode) {
    static const auto real = realFunction<OpenFn>("open");
    if (g_current_script == nullptr) return real(path, flags, mode);
    if (const int error = g_current_script->nextError(SystemCall::kOpen); error != 0) {
      errno = error;
      return -1;
    }
    const int fd = real(path, flags, mode);
    const int error = errno;
    g_current_script->opens.push_back({path, flags, mode, fd});
    errno = error;
    return fd;
  }

  static int flock(int fd, int operation) {
    static const auto real = realFunction<int (*)(int, int)>("flock");
    if (g_current_script == nullptr) return real(fd, operation);
    g_current_script->flock_operations.push_back(operation);
    if (const int error = g_current_script->nextError(SystemCall::kFlock); error != 0) {
      errno = error;
      return -1;
    }
    return real(fd, operation);
  }

  static int ftruncate(int fd, off_t length) {
    static const auto real = realFunction<int (*)(int, off_t)>("ftruncate");
    if (g_current_script != nullptr) {
      if (const int error = g_current_script->nextError(SystemCall::kFtruncate); error != 0) {
        errno = error;
        return -1;
      }
    }
    return real(fd, length);
  }

  static int fstat(int fd, struct stat* answer) {
    static const auto real = realFunction<int (*)(int, struct stat*)>("fstat");
    if (g_current_script != nullptr) {
      if (const int error = g_current_script->nextError(SystemCall::kFstat); error != 0) {
        errno = error;
        return -1;
      }
    }
    return real(fd, answer);
  }

  static ssize_t pwrite(int fd, const void* data, size_t size, off_t offset) {
    static const auto real = realFunction<PwriteFn>("pwrite");
    if (g_current_script == nullptr) return real(fd, data, size, offset);
    const int error = g_current_script->nextError(SystemCall::kPwrite);
    size_t taken = size;
    const auto cut =
        g_current_script->m_short_writes.find(g_current_script->count(SystemCall::kPwrite));
    if (cut != g_current_script->m_short_writes.end()) taken = static_cast<size_t>(cut->second);
    ssize_t result = -1;
    if (error == 0) {
      result = g_current_script->swallows(fd) ? static_cast<ssize_t>(taken)
                                              : real(fd, data, taken, offset);
    }
    const int kept = error != 0 ? error : errno;
    g_current_script->pwrites.push_back(
        {fd, offset, static_cast<int64_t>(size), onlyZeros(data, size), result});
    errno = kept;
    return result;
  }
};

}  // namespace fake_host

namespace {

unsigned modeOf(int flags, va_list arguments) {
  return (flags & O_CREAT) != 0 ? va_arg(arguments, unsigned) : 0U;
}

}  // namespace

// The program's definitions come before libc's for the module too.
extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const unsigned mode = modeOf(flags, arguments);
  va_end(arguments);
  return fake_host::ScriptedCalls::open(path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const unsigned mode = modeOf(flags, arguments);
  va_end(arguments);
  return fake_host::ScriptedCalls::open(path, flags, mode);
}

int flock(int fd, int operation) noexcept {
  return fake_host::ScriptedCalls::flock(fd, operation);
}

int ftruncate(int fd, off_t length) noexcept {
  return fake_host::ScriptedCalls::ftruncate(fd, length);
}

int ftruncate64(int fd, off64_t length) noexcept {
  return fake_host::ScriptedCalls::ftruncate(fd, length);
}

int fstat(int fd, struct stat* answer) noexcept {
  return fake_host::ScriptedCalls::fstat(fd, answer);
}

ssize_t pwrite(int fd, const void* data, size_t size, off_t offset) {
  return fake_host::ScriptedCalls::pwrite(fd, data, size, offset);
}

ssize_t pwrite64(int fd, const void* data, size_t size, off64_t offset) {
  return fake_host::ScriptedCalls::pwrite(fd, data, size, offset);
}
}
