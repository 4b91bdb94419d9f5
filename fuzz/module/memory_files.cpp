#include "fuzz/module/memory_files.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>

extern "C" {

// The C library's own, by the names that the linker's --wrap gives them.
int __real_open(const char* path, int flags, ...);
int __real_close(int fd);
int __real_flock(int fd, int operation);
int __real_ftruncate(int fd, off_t length);
ssize_t __real_pwrite(int fd, const void* data, size_t size, off_t offset);

int __wrap_open(const char* path, int flags, ...);
int __wrap_close(int fd);
int __wrap_flock(int fd, int operation);
int __wrap_ftruncate(int fd, off_t length);
ssize_t __wrap_pwrite(int fd, const void* data, size_t size, off_t offset);

}  // extern "C"

namespace fuzz {

namespace {

/// Above what the system gives out.
constexpr int kFirstDescriptor = 1 << 20;

struct File {
  std::string name;
  std::vector<char> bytes;
};

struct Descriptor {
  size_t file = 0;
  bool is_open = false;
  bool is_locked = false;
};

struct Folder {
  /// The first `used` are there; the others keep their memory for the next render.
  std::vector<File> files;
  size_t used = 0;
  std::vector<Descriptor> descriptors;
  size_t changes = 0;
  bool serving = false;
};

Folder g_folder;

File* fileOf(const std::string& name) {
  const auto end = g_folder.files.begin() + static_cast<std::ptrdiff_t>(g_folder.used);
  const auto found = std::find_if(g_folder.files.begin(), end,
                                  [&](const File& file) { return file.name == name; });
  return found == end ? nullptr : &*found;
}

File& makeFile(const char* name) {
  if (g_folder.used == g_folder.files.size()) g_folder.files.emplace_back();
  File& file = g_folder.files[g_folder.used++];
  file.name = name;
  file.bytes.clear();
  return file;
}

/// The descriptor behind `fd`, null when it is one of the system's.
Descriptor* descriptorOf(int fd) {
  if (fd < kFirstDescriptor) return nullptr;
  const auto place = static_cast<size_t>(fd - kFirstDescriptor);
  return place < g_folder.descriptors.size() ? &g_folder.descriptors[place] : nullptr;
}

int refuse(int error) {
  errno = error;
  return -1;
}

int openFile(const char* name) {
  if (name[0] == '\0') return refuse(ENOENT);
  if (strcmp(name, ".") == 0 || strcmp(name, "..") == 0) return refuse(EISDIR);
  if (strlen(name) > NAME_MAX) return refuse(ENAMETOOLONG);
  File* file = fileOf(name);
  if (!file) file = &makeFile(name);
  g_folder.descriptors.push_back(
      {.file = static_cast<size_t>(file - g_folder.files.data()), .is_open = true});
  return kFirstDescriptor + static_cast<int>(g_folder.descriptors.size()) - 1;
}

bool isLockedByAnother(const Descriptor& asking) {
  return std::any_of(g_folder.descriptors.begin(), g_folder.descriptors.end(),
                     [&](const Descriptor& each) {
                       return &each != &asking && each.file == asking.file && each.is_locked;
                     });
}

}  // namespace

MemoryFiles::MemoryFiles() {
  g_folder.used = 0;
  g_folder.descriptors.clear();
  g_folder.changes = 0;
  g_folder.serving = true;
}

MemoryFiles::~MemoryFiles() {
  g_folder.serving = false;
}

bool MemoryFiles::exists(const std::string& name) {
  return fileOf(name) != nullptr;
}

std::string_view MemoryFiles::contents(const std::string& name) {
  const File* const file = fileOf(name);
  return file ? std::string_view(file->bytes.data(), file->bytes.size()) : std::string_view();
}

bool MemoryFiles::isHeld(const std::string& name) {
  return std::any_of(
      g_folder.descriptors.begin(), g_folder.descriptors.end(), [&](const Descriptor& each) {
        return g_folder.files[each.file].name == name && (each.is_open || each.is_locked);
      });
}

int MemoryFiles::openCount() {
  return static_cast<int>(std::count_if(g_folder.descriptors.begin(), g_folder.descriptors.end(),
                                        [](const Descriptor& each) { return each.is_open; }));
}

size_t MemoryFiles::changes() {
  return g_folder.changes;
}

}  // namespace fuzz

using namespace fuzz;  // NOLINT: the definitions below must lie outside

int __wrap_open(const char* path, int flags, ...) {
  if (g_folder.serving) return openFile(path);
  va_list arguments;
  va_start(arguments, flags);
  const unsigned mode = (flags & O_CREAT) != 0 ? va_arg(arguments, unsigned) : 0U;
  va_end(arguments);
  return __real_open(path, flags, mode);
}

int __wrap_close(int fd) {
  Descriptor* const closed = descriptorOf(fd);
  if (!closed) return __real_close(fd);
  if (!closed->is_open) return refuse(EBADF);
  closed->is_open = closed->is_locked = false;
  return 0;
}

int __wrap_flock(int fd, int operation) {
  Descriptor* const asking = descriptorOf(fd);
  if (!asking) return __real_flock(fd, operation);
  const bool wanted = (operation & LOCK_UN) == 0;
  if (wanted && isLockedByAnother(*asking)) return refuse(EWOULDBLOCK);
  asking->is_locked = wanted;
  return 0;
}

int __wrap_ftruncate(int fd, off_t length) {
  const Descriptor* const cut = descriptorOf(fd);
  if (!cut) return __real_ftruncate(fd, length);
  g_folder.files[cut->file].bytes.resize(static_cast<size_t>(length));
  ++g_folder.changes;
  return 0;
}

ssize_t __wrap_pwrite(int fd, const void* data, size_t size, off_t offset) {
  const Descriptor* const written = descriptorOf(fd);
  if (!written) return __real_pwrite(fd, data, size, offset);
  if (!written->is_open) return refuse(EBADF);
  std::vector<char>& bytes = g_folder.files[written->file].bytes;
  const size_t from = static_cast<size_t>(offset);
  if (from > bytes.size()) bytes.resize(from);
  const auto* const begin = static_cast<const char*>(data);
  const size_t over = std::min(size, bytes.size() - from);
  std::copy_n(begin, over, bytes.begin() + offset);
  bytes.insert(bytes.end(), begin + over, begin + size);
  ++g_folder.changes;
  return static_cast<ssize_t>(size);
}
