// The system's functions for files, watched.
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>

#include "tests/kit/faults/watched_call.h"

namespace test_kit {

namespace {

/// The C library's own definition of `name`.
template <typename Function>
Function real(Function /*type*/, const char* name) {
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

unsigned modeOf(int flags, va_list arguments) {
  return (flags & O_CREAT) != 0 ? va_arg(arguments, unsigned) : 0U;
}

bool onlyZeros(const void* data, size_t size) {
  const auto* bytes = static_cast<const char*>(data);
  return std::all_of(bytes, bytes + size, [](char byte) { return byte == 0; });
}

int64_t addressOf(const void* data) {
  return static_cast<int64_t>(reinterpret_cast<intptr_t>(data));
}

int watchedOpen(const char* path, int flags, unsigned mode, const void* caller) {
  static const auto kReal = real(&::open, "open");
  WatchedCall watched(Call::kOpen, caller);
  watched.concerns(path);
  return static_cast<int>(watched.run({.size = flags, .offset = static_cast<int64_t>(mode)},
                                      [&] { return kReal(path, flags, mode); }));
}

int watchedTruncate(int fd, off_t length, const void* caller) {
  static const auto kReal = real(&::ftruncate, "ftruncate");
  const WatchedCall watched(Call::kFtruncate, caller);
  return static_cast<int>(
      watched.run({.size = length, .fd = fd}, [&] { return kReal(fd, length); }));
}

ssize_t watchedWrite(int fd, const void* data, size_t size, off_t offset, const void* caller) {
  static const auto kReal = real(&::pwrite, "pwrite");
  const WatchedCall watched(Call::kPwrite, caller);
  if (!watched.isWatched()) return kReal(fd, data, size, offset);
  const size_t allowed = watched.allowed(size);
  return watched.run({.size = static_cast<int64_t>(size),
                      .offset = offset,
                      .length = addressOf(data),
                      .fd = fd,
                      .only_zeros = onlyZeros(data, size)},
                     [&] {
                       return watched.swallowed(fd) ? static_cast<ssize_t>(allowed)
                                                    : kReal(fd, data, allowed, offset);
                     });
}

ssize_t watchedRead(int fd, void* data, size_t size, off_t offset, const void* caller) {
  static const auto kReal = real(&::pread, "pread");
  const WatchedCall watched(Call::kPread, caller);
  const size_t allowed = watched.allowed(size);
  return watched.run(
      {.size = static_cast<int64_t>(size), .offset = offset, .length = addressOf(data), .fd = fd},
      [&] { return kReal(fd, data, allowed, offset); });
}

off_t watchedSeek(int fd, off_t offset, int whence, const void* caller) {
  static const auto kReal = real(&::lseek, "lseek");
  const WatchedCall watched(Call::kLseek, caller);
  return watched.run({.size = whence, .offset = offset, .fd = fd},
                     [&] { return kReal(fd, offset, whence); });
}

}  // namespace

}  // namespace test_kit

using namespace test_kit;  // NOLINT: the definitions below must lie outside

extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const unsigned mode = modeOf(flags, arguments);
  va_end(arguments);
  return watchedOpen(path, flags, mode, __builtin_return_address(0));
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const unsigned mode = modeOf(flags, arguments);
  va_end(arguments);
  return watchedOpen(path, flags, mode, __builtin_return_address(0));
}

int flock(int fd, int operation) noexcept {
  static const auto kReal = real(&::flock, "flock");
  const WatchedCall watched(Call::kFlock, __builtin_return_address(0));
  return static_cast<int>(
      watched.run({.size = operation, .fd = fd}, [&] { return kReal(fd, operation); }));
}

int ftruncate(int fd, off_t length) noexcept {
  return watchedTruncate(fd, length, __builtin_return_address(0));
}

int ftruncate64(int fd, off64_t length) noexcept {
  return watchedTruncate(fd, length, __builtin_return_address(0));
}

int fstat(int fd, struct stat* status) noexcept {
  static const auto kReal = real(&::fstat, "fstat");
  const WatchedCall watched(Call::kFstat, __builtin_return_address(0));
  return static_cast<int>(watched.run({.fd = fd}, [&] { return kReal(fd, status); }));
}

int fstatfs(int fd, struct statfs* status) noexcept {
  static const auto kReal = real(&::fstatfs, "fstatfs");
  const WatchedCall watched(Call::kFstatfs, __builtin_return_address(0));
  return static_cast<int>(watched.run({.fd = fd}, [&] {
    const int result = kReal(fd, status);
    status->f_type = watched.fileSystem(status->f_type);
    return result;
  }));
}

ssize_t pwrite(int fd, const void* data, size_t size, off_t offset) {
  return watchedWrite(fd, data, size, offset, __builtin_return_address(0));
}

ssize_t pwrite64(int fd, const void* data, size_t size, off64_t offset) {
  return watchedWrite(fd, data, size, offset, __builtin_return_address(0));
}

ssize_t pread(int fd, void* data, size_t size, off_t offset) {
  return watchedRead(fd, data, size, offset, __builtin_return_address(0));
}

ssize_t pread64(int fd, void* data, size_t size, off64_t offset) {
  return watchedRead(fd, data, size, offset, __builtin_return_address(0));
}

off_t lseek(int fd, off_t offset, int whence) noexcept {
  return watchedSeek(fd, offset, whence, __builtin_return_address(0));
}

off64_t lseek64(int fd, off64_t offset, int whence) noexcept {
  return watchedSeek(fd, offset, whence, __builtin_return_address(0));
}

int fcntl(int fd, int command, ...) {
  static const auto kReal = real(&::fcntl, "fcntl");
  va_list arguments;
  va_start(arguments, command);
  const long argument = va_arg(arguments, long);
  va_end(arguments);
  const WatchedCall watched(Call::kFcntl, __builtin_return_address(0));
  return static_cast<int>(
      watched.run({.size = command, .fd = fd}, [&] { return kReal(fd, command, argument); }));
}

int close(int fd) {
  static const auto kReal = real(&::close, "close");
  const WatchedCall watched(Call::kClose, __builtin_return_address(0));
  if (watched.error() != 0) kReal(fd);
  return static_cast<int>(watched.run({.fd = fd}, [&] { return kReal(fd); }));
}

int unlink(const char* path) noexcept {
  static const auto kReal = real(&::unlink, "unlink");
  WatchedCall watched(Call::kUnlink, __builtin_return_address(0));
  watched.concerns(path);
  return static_cast<int>(watched.run({}, [&] { return kReal(path); }));
}

int munmap(void* address, size_t length) noexcept {
  static const auto kReal = real(&::munmap, "munmap");
  const WatchedCall watched(Call::kMunmap, __builtin_return_address(0));
  if (watched.error() != 0) kReal(address, length);
  return static_cast<int>(
      watched.run({.size = static_cast<int64_t>(length)}, [&] { return kReal(address, length); }));
}

/// While it is watched it does not wait for the disk: the loops over all faults would spend their
/// time on that, for files that are thrown away.
int fsync(int fd) {
  static const auto kReal = real(&::fsync, "fsync");
  const WatchedCall watched(Call::kFsync, __builtin_return_address(0));
  return static_cast<int>(
      watched.run({.fd = fd}, [&] { return watched.isWatched() ? 0 : kReal(fd); }));
}

/// Unlike the others it answers the error itself.
int posix_fadvise(int fd, off_t offset, off_t length, int advice) noexcept {
  static const auto kReal = real(&::posix_fadvise, "posix_fadvise");
  const WatchedCall watched(Call::kFadvise, __builtin_return_address(0));
  const int64_t result = watched.run({.size = advice, .offset = offset, .length = length, .fd = fd},
                                     [&] { return kReal(fd, offset, length, advice); });
  return watched.error() != 0 ? watched.error() : static_cast<int>(result);
}

}  // extern "C"
