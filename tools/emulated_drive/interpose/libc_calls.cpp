// The calls of libc through which a program meets a device: here they meet the emulated ones, and
// pass everything else on. Preloaded or linked into the program, these definitions win over libc's
// for the program and for every library it loads.
//
// Programs built against older headers call __xstat and its kind, and __open_2 where the buffer
// checks are on.

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>

#include "tools/emulated_drive/interpose/device_ioctl.h"
#include "tools/emulated_drive/interpose/device_table.h"

namespace velmor::emulated_drive {

namespace {

constexpr unsigned kCdromMajor = 11;
constexpr gid_t kCdromGroup = 24;
constexpr mode_t kDeviceMode = S_IFBLK | 0660;

/// libc's own definition of `name`.
template <typename Function>
Function libc(Function /*type*/, const char* name) {
  void* found = ::dlsym(RTLD_NEXT, name);
  if (found == nullptr) {
    std::fprintf(stderr, "velmor-emulated-drive: this system's C library has no %s\n", name);
    std::abort();
  }
  return reinterpret_cast<Function>(found);
}

/// Restores errno at its end: what the emulator asks of the system must not change the errno that
/// the program sees.
class ErrnoKept {
 public:
  ErrnoKept() = default;
  ~ErrnoKept() { errno = m_before; }
  ErrnoKept(const ErrnoKept&) = delete;
  ErrnoKept& operator=(const ErrnoKept&) = delete;

 private:
  int m_before = errno;
};

/// What a path leads to while emulation is on: a real file, a real drive that is hidden, or an
/// emulated drive.
enum class PathKind { kForeign, kHidden, kDevice };

struct PathTarget {
  PathKind kind = PathKind::kForeign;
  std::shared_ptr<EmulatedDevice> device;
};

enum class Links { kFollowed, kKept };

/// The name that a path leads to: /dev/disk/by-id and its like hold links to the drives.
std::string settled(const char* path, Links links) {
  constexpr int kMostLinks = 40;  // as many as the kernel follows
  std::filesystem::path name = path;
  for (int i = 0; links == Links::kFollowed && i < kMostLinks; ++i) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::read_symlink(name, error);
    if (error) {
      break;
    }
    name = name.parent_path() / target;
  }
  return name.lexically_normal();
}

PathTarget targetOf(const char* path, Links links = Links::kFollowed) {
  // Most paths are not below /dev and need no look at the drives.
  if (DirectCalls::active() || std::string_view(path).substr(0, 5) != "/dev/") {
    return {};
  }
  const ErrnoKept kept;
  const DirectCalls direct;
  DeviceTable& devices = DeviceTable::instance();
  if (!devices.active()) {
    return {};
  }
  const std::string name = settled(path, links);
  if (std::shared_ptr<EmulatedDevice> device = devices.byPath(name)) {
    return {PathKind::kDevice, std::move(device)};
  }
  return {isOpticalDeviceName(name) ? PathKind::kHidden : PathKind::kForeign, nullptr};
}

std::shared_ptr<EmulatedDevice> deviceOf(int descriptor) {
  const ErrnoKept kept;
  return DirectCalls::active() ? nullptr : DeviceTable::instance().byDescriptor(descriptor);
}

int fail(int reason) {
  errno = reason;
  return -1;
}

/// What the kernel would say to opening this device, 0 for nothing.
int refusalToOpen(const EmulatedDevice& device, int flags) {
  const DriveSettings settings = device.settings();
  if (settings.deny) {
    return EACCES;
  }
  if (settings.busy) {
    return EBUSY;
  }
  const bool medium_awaited = (flags & O_NONBLOCK) == 0;
  return medium_awaited && (!device.hasDisc() || device.trayOpen()) ? ENOMEDIUM : 0;
}

bool isDenied(const EmulatedDevice& device) {
  const ErrnoKept kept;
  const DirectCalls direct;
  try {
    return device.settings().deny;
  } catch (const std::exception&) {
    return true;  // opening tells what is wrong with the settings
  }
}

int openDevice(const std::shared_ptr<EmulatedDevice>& device, int flags) {
  const DirectCalls direct;
  const int before = errno;
  try {
    if (const int reason = refusalToOpen(*device, flags)) {
      return fail(reason);
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "velmor-emulated-drive: %s\n", error.what());
    return fail(EIO);
  }
  // A real file stands behind the descriptor, so that locks work between programs as on a device.
  const int descriptor =
      ::open(device->door().c_str(), O_RDWR | O_CREAT | (flags & O_CLOEXEC), 0666);
  if (descriptor < 0) {
    return -1;
  }
  if ((flags & O_EXCL) != 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
    ::close(descriptor);
    return fail(EBUSY);
  }
  DeviceTable::instance().attach(descriptor, device);
  errno = before;
  return descriptor;
}

template <typename Stat>
int statDevice(const EmulatedDevice& device, Stat* info) {
  *info = {};
  info->st_mode = kDeviceMode;
  info->st_nlink = 1;
  info->st_gid = kCdromGroup;
  info->st_rdev = makedev(kCdromMajor, device.minor());
  info->st_dev = makedev(0, 5);
  info->st_ino = 100000u + device.minor();
  info->st_blksize = 4096;
  return 0;
}

/// One stat by path: emulated, hidden or passed on to `next`.
template <typename Stat, typename Next>
int statPath(const char* path, Stat* info, Next next, Links links = Links::kFollowed) {
  const PathTarget place = targetOf(path, links);
  switch (place.kind) {
    case PathKind::kDevice:
      return statDevice(*place.device, info);
    case PathKind::kHidden:
      return fail(ENOENT);
    case PathKind::kForeign:
      break;
  }
  return next();
}

template <typename Stat, typename Next>
int statDescriptor(int descriptor, Stat* info, Next next) {
  const std::shared_ptr<EmulatedDevice> device = deviceOf(descriptor);
  return device ? statDevice(*device, info) : next();
}

template <typename Next>
int openPath(const char* path, int flags, Next next) {
  const PathTarget place = targetOf(path);
  switch (place.kind) {
    case PathKind::kDevice:
      return openDevice(place.device, flags);
    case PathKind::kHidden:
      return fail(ENOENT);
    case PathKind::kForeign:
      break;
  }
  return next();
}

/// The permissions that open was given; none where it makes no file.
mode_t modeOf(int flags, va_list arguments) {
  const bool makes_file = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
  return makes_file ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

}  // namespace velmor::emulated_drive

using namespace velmor::emulated_drive;  // NOLINT: the definitions below must lie outside

extern "C" {

// Declared here where the headers of this system no longer do.
int __open_2(const char* path, int flags);
int __open64_2(const char* path, int flags);
int __xstat(int version, const char* path, struct stat* info) noexcept;
int __xstat64(int version, const char* path, struct stat64* info) noexcept;
int __lxstat(int version, const char* path, struct stat* info) noexcept;
int __lxstat64(int version, const char* path, struct stat64* info) noexcept;
int __fxstat(int version, int descriptor, struct stat* info) noexcept;
int __fxstat64(int version, int descriptor, struct stat64* info) noexcept;

int open(const char* path, int flags, ...) {
  static const auto kNext = libc(&::open, "open");
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeOf(flags, arguments);
  va_end(arguments);
  return openPath(path, flags, [&] { return kNext(path, flags, mode); });
}

int open64(const char* path, int flags, ...) {
  static const auto kNext = libc(&::open64, "open64");
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeOf(flags, arguments);
  va_end(arguments);
  return openPath(path, flags, [&] { return kNext(path, flags, mode); });
}

int __open_2(const char* path, int flags) {
  static const auto kNext = libc(&::__open_2, "__open_2");
  return openPath(path, flags, [&] { return kNext(path, flags); });
}

int __open64_2(const char* path, int flags) {
  static const auto kNext = libc(&::__open64_2, "__open64_2");
  return openPath(path, flags, [&] { return kNext(path, flags); });
}

int close(int descriptor) {
  static const auto kNext = libc(&::close, "close");
  if (deviceOf(descriptor)) {
    DeviceTable::instance().detach(descriptor);
  }
  return kNext(descriptor);
}

int ioctl(int descriptor, unsigned long request, ...) noexcept {
  static const auto kNext = libc(&::ioctl, "ioctl");
  va_list arguments;
  va_start(arguments, request);
  void* argument = va_arg(arguments, void*);
  va_end(arguments);
  const std::shared_ptr<EmulatedDevice> device = deviceOf(descriptor);
  if (!device) {
    return kNext(descriptor, request, argument);
  }
  const DirectCalls direct;
  const int before = errno;
  try {
    const int result = deviceIoctl(*device, request, argument);
    errno = result < 0 ? errno : before;
    return result;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "velmor-emulated-drive: %s\n", error.what());
    return fail(EIO);
  }
}

int access(const char* path, int mode) noexcept {
  static const auto kNext = libc(&::access, "access");
  const PathTarget place = targetOf(path);
  switch (place.kind) {
    case PathKind::kDevice:
      return mode != F_OK && isDenied(*place.device) ? fail(EACCES) : 0;
    case PathKind::kHidden:
      return fail(ENOENT);
    case PathKind::kForeign:
      break;
  }
  return kNext(path, mode);
}

int stat(const char* path, struct stat* info) noexcept {
  static const auto kNext = libc(static_cast<int (*)(const char*, struct stat*)>(&::stat), "stat");
  return statPath(path, info, [&] { return kNext(path, info); });
}

int stat64(const char* path, struct stat64* info) noexcept {
  static const auto kNext =
      libc(static_cast<int (*)(const char*, struct stat64*)>(&::stat64), "stat64");
  return statPath(path, info, [&] { return kNext(path, info); });
}

int lstat(const char* path, struct stat* info) noexcept {
  static const auto kNext = libc(&::lstat, "lstat");
  return statPath(
      path, info, [&] { return kNext(path, info); }, Links::kKept);
}

int lstat64(const char* path, struct stat64* info) noexcept {
  static const auto kNext = libc(&::lstat64, "lstat64");
  return statPath(
      path, info, [&] { return kNext(path, info); }, Links::kKept);
}

int fstat(int descriptor, struct stat* info) noexcept {
  static const auto kNext = libc(&::fstat, "fstat");
  return statDescriptor(descriptor, info, [&] { return kNext(descriptor, info); });
}

int fstat64(int descriptor, struct stat64* info) noexcept {
  static const auto kNext = libc(&::fstat64, "fstat64");
  return statDescriptor(descriptor, info, [&] { return kNext(descriptor, info); });
}

int __xstat(int version, const char* path, struct stat* info) noexcept {
  static const auto kNext = libc(&::__xstat, "__xstat");
  return statPath(path, info, [&] { return kNext(version, path, info); });
}

int __xstat64(int version, const char* path, struct stat64* info) noexcept {
  static const auto kNext = libc(&::__xstat64, "__xstat64");
  return statPath(path, info, [&] { return kNext(version, path, info); });
}

int __lxstat(int version, const char* path, struct stat* info) noexcept {
  static const auto kNext = libc(&::__lxstat, "__lxstat");
  return statPath(
      path, info, [&] { return kNext(version, path, info); }, Links::kKept);
}

int __lxstat64(int version, const char* path, struct stat64* info) noexcept {
  static const auto kNext = libc(&::__lxstat64, "__lxstat64");
  return statPath(
      path, info, [&] { return kNext(version, path, info); }, Links::kKept);
}

int __fxstat(int version, int descriptor, struct stat* info) noexcept {
  static const auto kNext = libc(&::__fxstat, "__fxstat");
  return statDescriptor(descriptor, info, [&] { return kNext(version, descriptor, info); });
}

int __fxstat64(int version, int descriptor, struct stat64* info) noexcept {
  static const auto kNext = libc(&::__fxstat64, "__fxstat64");
  return statDescriptor(descriptor, info, [&] { return kNext(version, descriptor, info); });
}

}  // extern "C"
