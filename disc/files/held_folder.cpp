#include "disc/files/held_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <system_error>

#include "disc/text/phrases.h"

namespace velmor::disc {

namespace fs = std::filesystem;

namespace {

constexpr size_t kRandomLetters = 6;

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

bool isItselfOrParent(const char* name) {
  return strcmp(name, ".") == 0 || strcmp(name, "..") == 0;
}

/// Whether nothing stands under `name` in the folder `parent` any more.
bool removeAll(int parent, const char* name) {
  if (unlinkat(parent, name, 0) == 0 || errno == ENOENT) return true;
  const int fd = openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (fd >= 0) {
    if (DIR* const folder = fdopendir(fd)) {
      while (const dirent* const entry = readdir(folder)) {
        if (!isItselfOrParent(entry->d_name)) removeAll(fd, entry->d_name);
      }
      closedir(folder);
    } else {
      close(fd);
    }
  }
  return unlinkat(parent, name, AT_REMOVEDIR) == 0;
}

int openFolder(const char* path) {
  return open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

/// A folder that is open for as long as the object lives.
class OpenFolder {
 public:
  explicit OpenFolder(const char* path) : m_descriptor(openFolder(path)) {}
  ~OpenFolder() {
    if (m_descriptor >= 0) close(m_descriptor);
  }
  OpenFolder(const OpenFolder&) = delete;
  OpenFolder& operator=(const OpenFolder&) = delete;

  /// -1: it could not be opened.
  int descriptor() const { return m_descriptor; }

 private:
  const int m_descriptor;
};

/// Whether the open folder is this user's own.
bool isOwn(int folder) {
  struct stat status {};
  return fstat(folder, &status) == 0 && status.st_uid == geteuid();
}

/// Whether the open folder has been removed; no where the system does not say.
bool isGone(int folder) {
  struct stat status {};
  return fstat(folder, &status) == 0 && status.st_nlink == 0;
}

bool hasSuchName(const fs::path& path, const std::string& name_begin) {
  const std::string name = path.filename().string();
  return name.rfind(name_begin, 0) == 0 && name.size() == name_begin.size() + kRandomLetters;
}

}  // namespace

Failure cannotWriteTo(const fs::path& parent, int error, const char* advice) {
  return Failure("nothing can be written to the folder " + inQuotes(parent.string()) + ": " +
                 std::string(strerror(error)) + "; " + advice);
}

/// Between its birth and its lock another process may take the folder for an abandoned one and
/// remove it; then there is another.
HeldFolder::HeldFolder(const fs::path& parent, const std::string& name_begin, const char* advice) {
  while (m_held < 0) {
    m_path = (parent / (name_begin + std::string(kRandomLetters, 'X'))).string();
    if (!mkdtemp(m_path.data())) throw cannotWriteTo(parent, errno, advice);
    m_held = openFolder(m_path.c_str());
    if (m_held < 0 && errno != ENOENT) {
      const int error = errno;
      rmdir(m_path.c_str());
      throw cannotWriteTo(parent, error, advice);
    }
    if (m_held < 0 || holdsIt()) continue;
    close(m_held);
    m_held = -1;
  }
}

HeldFolder::~HeldFolder() {
  close(m_held);
}

/// Where the file system has no locks, nobody else can lock it either, and nobody removes it.
bool HeldFolder::holdsIt() const {
  const bool is_others = flock(m_held, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  return !is_others && !isGone(m_held);
}

void forEachAbandoned(const fs::path& parent, const std::string& name_begin,
                      const std::function<void(const fs::path&)>& found) {
  std::error_code ignored;
  for (const fs::path& folder : entriesOf(parent, ignored)) {
    if (!hasSuchName(folder, name_begin)) continue;
    const OpenFolder opened(folder.c_str());
    if (opened.descriptor() < 0) continue;
    const bool is_free = flock(opened.descriptor(), LOCK_EX | LOCK_NB) == 0;
    if (is_free && isOwn(opened.descriptor()) && !isGone(opened.descriptor())) found(folder);
  }
}

bool removeWhole(const char* folder) noexcept {
  return removeAll(AT_FDCWD, folder);
}

// The library's directory_iterator ends the program where its memory runs out.
std::vector<fs::path> entriesOf(const fs::path& folder, std::error_code& error) {
  std::vector<fs::path> entries;
  const std::unique_ptr<DIR, CloseFolder> opened(opendir(folder.c_str()));
  if (!opened) {
    error.assign(errno, std::generic_category());
    return entries;
  }
  errno = 0;
  while (const dirent* const entry = readdir(opened.get())) {
    if (!isItselfOrParent(entry->d_name)) entries.push_back(folder / entry->d_name);
    errno = 0;
  }
  error.assign(errno, std::generic_category());
  return entries;
}

int64_t bytesIn(const fs::path& folder) {
  int64_t bytes = 0;
  std::error_code error;
  for (const fs::path& file : entriesOf(folder, error)) {
    struct stat status {};
    if (lstat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode)) bytes += status.st_size;
  }
  return bytes;
}

std::string removeAbandoned(const fs::path& folder, int64_t bytes) {
  if (!removeWhole(folder.c_str())) {
    const int error = errno;
    return leftByKilledRun(folder) + "cannot be removed: " + strerror(error) + "; delete it";
  }
  return leftByKilledRun(folder) + "was removed, " + std::to_string(bytes / 1'000'000) + " MB";
}

std::string leftByKilledRun(const fs::path& folder) {
  return inQuotes(folder.string()) + ", which a killed run has left, ";
}

}  // namespace velmor::disc
