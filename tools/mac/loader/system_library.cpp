#include "tools/mac/loader/system_library.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <sys/statfs.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

#include "tools/mac/loader/mac_process.h"
#include "tools/mac/loader/processor.h"

namespace loader {

namespace {

// The numbers of macOS, from its public interface.
namespace mac {
constexpr int kCreate = 0x200;
constexpr int kTruncate = 0x400;
constexpr int kCloseOnExec = 0x1000000;
constexpr int kAccessMode = 0x3;
constexpr int kNoCache = 48;
constexpr uint32_t kLocal = 0x1000;
constexpr int kErrorAgain = 35;
constexpr int kErrorQuota = 69;

struct TimeSpec {
  int64_t seconds, nanoseconds;
};
struct Stat {
  int32_t device;
  uint16_t mode, links;
  uint64_t inode;
  uint32_t user, group;
  int32_t special_device;
  TimeSpec accessed, modified, changed, born;
  int64_t size, blocks;
  int32_t block_size;
  uint32_t flags, generation;
  int32_t spare;
  int64_t more_spare[2];
};
static_assert(sizeof(Stat) == 144 && offsetof(Stat, size) == 96);
struct StatFs {
  uint32_t block_size;
  int32_t io_size;
  uint64_t blocks, free, available, files, free_files, id;
  uint32_t owner, type, flags, subtype;
  char type_name[16];
  char mount_point[1024];
  char device[1024];
  uint32_t reserved[8];
};
static_assert(sizeof(StatFs) == 2168 && offsetof(StatFs, flags) == 64);
}  // namespace mac

int fileStatus(int fd, mac::Stat* status) {
  struct stat ours;
  if (fstat(fd, &ours) != 0) return -1;
  *status = {};
  status->mode = static_cast<uint16_t>(ours.st_mode);
  status->size = ours.st_size;
  return 0;
}

int fileSystemStatus(int fd, mac::StatFs* status) {
  const Disk disk = theProcess().diskOf(fd);
  struct statfs ours;
  // What a failed call leaves is nothing to go by.
  *status = {};
  if (fstatfs(fd, &ours) != 0 || disk == Disk::kUnknown) return -1;
  status->flags = disk == Disk::kLocal ? mac::kLocal : 0;
  return 0;
}

int* errorNumber() {
  thread_local int translated;
  translated = errno == EWOULDBLOCK ? mac::kErrorAgain : errno == EDQUOT ? mac::kErrorQuota : errno;
  return &translated;
}

void clearBytes(void* bytes, size_t count) {
  memset(bytes, 0, count);
}

[[noreturn]] void stackOverrun() {
  fputs("the dylib overran a stack frame\n", stderr);
  abort();
}

// Everything is bound when the file is mapped; this is never needed.
[[noreturn]] void bindLate() {
  fputs("the dylib binds a symbol late\n", stderr);
  abort();
}

uint64_t g_stack_guard = 0x7A00DE1C0FFEE5A0;

template <class Function>
void* addressOf(Function* function) {
  return reinterpret_cast<void*>(function);
}

}  // namespace

int openFile(const char* path, int flags, int mode) {
  int ours = flags & mac::kAccessMode;
  if ((flags & mac::kCreate) != 0) ours |= O_CREAT;
  if ((flags & mac::kTruncate) != 0) ours |= O_TRUNC;
  if ((flags & mac::kCloseOnExec) != 0) ours |= O_CLOEXEC;
  return open(path, ours, (flags & mac::kCreate) != 0 ? static_cast<mode_t>(mode) : 0);
}

int controlFile(int fd, int command, int argument) {
  if (command == mac::kNoCache) {
    theProcess().setUncached(fd, argument);
    return 0;
  }
  fprintf(stderr, "the dylib calls fcntl(%d, %d), which has no counterpart here\n", fd, command);
  abort();
}

void* systemSymbol(const std::string& symbol) {
  static const std::map<std::string, void*> kTranslated = {
      // With 64-bit inodes: for x86-64 they have names of their own, for arm64 there are no others.
      {"_fstat$INODE64", addressOf(fileStatus)},
      {"_fstat", addressOf(fileStatus)},
      {"_fstatfs$INODE64", addressOf(fileSystemStatus)},
      {"_fstatfs", addressOf(fileSystemStatus)},
      {"___error", addressOf(errorNumber)},
      {"___bzero", addressOf(clearBytes)},
      {"___stack_chk_fail", addressOf(stackOverrun)},
      {"___stack_chk_guard", &g_stack_guard},
      {"dyld_stub_binder", addressOf(bindLate)},
  };
  const auto found = kTranslated.find(symbol);
  if (found != kTranslated.end()) return found->second;
  if (void* const variadic = variadicSymbol(symbol)) return variadic;
  return dlsym(RTLD_DEFAULT, symbol.c_str() + 1);
}

}  // namespace loader
