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

SystemCallScript* current_script = nullptr;

template <class Function>
Function Real(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

bool OnlyZeros(const void* data, size_t size) {
  const auto* bytes = static_cast<const char*>(data);
  return size == 0 || (bytes[0] == 0 && std::memcmp(bytes, bytes + 1, size - 1) == 0);
}

}  // namespace

SystemCallScript::SystemCallScript() {
  if (current_script != nullptr) ADD_FAILURE() << "two scripts for the system calls";
  current_script = this;
}

SystemCallScript::~SystemCallScript() {
  current_script = nullptr;
}

int SystemCallScript::Count(SystemCall call) const {
  const auto found = counts_.find(call);
  return found == counts_.end() ? 0 : found->second;
}

int SystemCallScript::NextError(SystemCall call) {
  const int nth = ++counts_[call];
  if (const auto at = failures_.find({call, nth}); at != failures_.end()) return at->second;
  const auto from = failures_from_.find(call);
  return from != failures_from_.end() && nth >= from->second.first ? from->second.second : 0;
}

bool SystemCallScript::Swallows(int fd) const {
  if (swallowed_ending_.empty()) return false;
  for (auto open = opens.rbegin(); open != opens.rend(); ++open) {
    if (open->fd == fd) return open->path.ends_with(swallowed_ending_);
  }
  return false;
}

struct ScriptedCalls {
  using OpenFn = int (*)(const char*, int, ...);
  using PwriteFn = ssize_t (*)(int, const void*, size_t, off_t);

  static int Open(const char* path, int flags, unsigned mode) {
    static const auto real = Real<OpenFn>("open");
    if (current_script == nullptr) return real(path, flags, mode);
    if (const int error = current_script->NextError(SystemCall::kOpen); error != 0) {
      errno = error;
      return -1;
    }
    const int fd = real(path, flags, mode);
    const int error = errno;
    current_script->opens.push_back({path, flags, mode, fd});
    errno = error;
    return fd;
  }

  static int Flock(int fd, int operation) {
    static const auto real = Real<int (*)(int, int)>("flock");
    if (current_script == nullptr) return real(fd, operation);
    current_script->flock_operations.push_back(operation);
    if (const int error = current_script->NextError(SystemCall::kFlock); error != 0) {
      errno = error;
      return -1;
    }
    return real(fd, operation);
  }

  static int Ftruncate(int fd, off_t length) {
    static const auto real = Real<int (*)(int, off_t)>("ftruncate");
    if (current_script != nullptr) {
      if (const int error = current_script->NextError(SystemCall::kFtruncate); error != 0) {
        errno = error;
        return -1;
      }
    }
    return real(fd, length);
  }

  static int Fstat(int fd, struct stat* answer) {
    static const auto real = Real<int (*)(int, struct stat*)>("fstat");
    if (current_script != nullptr) {
      if (const int error = current_script->NextError(SystemCall::kFstat); error != 0) {
        errno = error;
        return -1;
      }
    }
    return real(fd, answer);
  }

  static ssize_t Pwrite(int fd, const void* data, size_t size, off_t offset) {
    static const auto real = Real<PwriteFn>("pwrite");
    if (current_script == nullptr) return real(fd, data, size, offset);
    const int error = current_script->NextError(SystemCall::kPwrite);
    size_t taken = size;
    const auto cut = current_script->short_writes_.find(current_script->Count(SystemCall::kPwrite));
    if (cut != current_script->short_writes_.end()) taken = static_cast<size_t>(cut->second);
    ssize_t result = -1;
    if (error == 0) {
      result = current_script->Swallows(fd) ? static_cast<ssize_t>(taken)
                                            : real(fd, data, taken, offset);
    }
    const int kept = error != 0 ? error : errno;
    current_script->pwrites.push_back(
        {fd, offset, static_cast<int64_t>(size), OnlyZeros(data, size), result});
    errno = kept;
    return result;
  }
};

}  // namespace fake_host

namespace {

unsigned ModeOf(int flags, va_list arguments) {
  return (flags & O_CREAT) != 0 ? va_arg(arguments, unsigned) : 0U;
}

}  // namespace

// The program's definitions come before libc's for the module too.
extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const unsigned mode = ModeOf(flags, arguments);
  va_end(arguments);
  return fake_host::ScriptedCalls::Open(path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const unsigned mode = ModeOf(flags, arguments);
  va_end(arguments);
  return fake_host::ScriptedCalls::Open(path, flags, mode);
}

int flock(int fd, int operation) noexcept {
  return fake_host::ScriptedCalls::Flock(fd, operation);
}

int ftruncate(int fd, off_t length) noexcept {
  return fake_host::ScriptedCalls::Ftruncate(fd, length);
}

int ftruncate64(int fd, off64_t length) noexcept {
  return fake_host::ScriptedCalls::Ftruncate(fd, length);
}

int fstat(int fd, struct stat* answer) noexcept {
  return fake_host::ScriptedCalls::Fstat(fd, answer);
}

ssize_t pwrite(int fd, const void* data, size_t size, off_t offset) {
  return fake_host::ScriptedCalls::Pwrite(fd, data, size, offset);
}

ssize_t pwrite64(int fd, const void* data, size_t size, off64_t offset) {
  return fake_host::ScriptedCalls::Pwrite(fd, data, size, offset);
}
}
