#include "host/render/output/working_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <utility>

#include "disc/failure.h"
#include "disc/text/phrases.h"
#include "host/render/terminal/messages.h"

namespace velmor::render {

namespace fs = std::filesystem;

namespace {

constexpr int kAttempts = 2;
constexpr const char* kNameBegin = ".velmor-render-";
constexpr size_t kRandomLetters = 6;

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

Failure notWritable(const fs::path& parent, int error) {
  return Failure("nothing can be written to the folder " + disc::inQuotes(parent.string()) + ": " +
                 std::string(strerror(error)) + "; choose another with -o");
}

int openFolder(const char* path) {
  return open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

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

bool hasWorkingName(const fs::path& path) {
  const std::string name = path.filename().string();
  return name.rfind(kNameBegin, 0) == 0 && name.size() == strlen(kNameBegin) + kRandomLetters;
}

/// What lies in `folder`; nothing, with `error` set, where it cannot be read.
std::vector<fs::path> entriesOf(const fs::path& folder, std::error_code& error) {
  std::vector<fs::path> entries;
  fs::directory_iterator at(folder, error);
  while (!error && at != fs::directory_iterator()) {
    entries.push_back(at->path());
    at.increment(error);
  }
  return entries;
}

/// Whether an old album's file lies in `folder` and nowhere else: a process that was killed while
/// it put its files in their place may have come no further than to take the old ones away.
bool holdsOnlyCopy(const fs::path& folder) {
  std::error_code error;
  for (const fs::path& file : entriesOf(folder, error)) {
    struct stat status {};
    if (lstat(file.c_str(), &status) != 0 || status.st_nlink < 2) return true;
  }
  return error && error != std::errc::no_such_file_or_directory;
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

}  // namespace

WorkingFolder::WorkingFolder(const fs::path& parent) {
  make(parent);
  if (mkdir(files().c_str(), 0700) == 0) return;
  const int error = errno;
  remove();
  close(m_held);
  throw notWritable(parent, error);
}

/// Between its birth and its lock another process may take the folder for an abandoned one and
/// remove it; then there is another.
void WorkingFolder::make(const fs::path& parent) {
  while (m_held < 0) {
    m_path = (parent / (kNameBegin + std::string(kRandomLetters, 'X'))).string();
    if (!mkdtemp(m_path.data())) throw notWritable(parent, errno);
    m_held = openFolder(m_path.c_str());
    if (m_held < 0 && errno != ENOENT) {
      const int error = errno;
      rmdir(m_path.c_str());
      throw notWritable(parent, error);
    }
    if (m_held < 0 || holdsIt()) continue;
    close(m_held);
    m_held = -1;
  }
}

/// Where the file system has no locks, nobody else can lock it either, and nobody removes it.
bool WorkingFolder::holdsIt() const {
  const bool is_others = flock(m_held, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  return !is_others && !isGone(m_held);
}

WorkingFolder::~WorkingFolder() {
  remove();
  if (m_held >= 0) close(m_held);
}

void WorkingFolder::nameParent() {
  removeAll(AT_FDCWD, replaced().c_str());
  removeAll(AT_FDCWD, files().c_str());
  std::error_code error;
  fs::create_directory_symlink("..", files(), error);
}

void WorkingFolder::remove() noexcept {
  if (m_stays) return;
  for (int i = 0; i < kAttempts; ++i) {
    if (removeAll(AT_FDCWD, m_path.c_str())) return;
  }
  printFolderThatStays(m_path.c_str(), strerror(errno));
}

std::string WorkingFolder::leave() noexcept {
  m_stays = true;
  return std::move(m_path);
}

std::vector<std::string> WorkingFolder::removeAbandoned(const fs::path& parent) {
  std::vector<std::string> told;
  std::error_code ignored;
  for (const fs::path& folder : entriesOf(parent, ignored)) {
    if (!hasWorkingName(folder)) continue;
    const int descriptor = openFolder(folder.c_str());
    if (descriptor < 0) continue;
    const bool is_free = flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    if (is_free && isOwn(descriptor) && !isGone(descriptor)) told.push_back(removeOne(folder));
    close(descriptor);
  }
  return told;
}

/// Removes a folder that nobody holds, or does not; the clause about it.
std::string WorkingFolder::removeOne(const fs::path& folder) {
  const std::string whose = disc::inQuotes(folder.string()) + ", which a killed run has left, ";
  if (holdsOnlyCopy(folder / kReplaced)) {
    return whose + "stays: files of an older album are in " +
           disc::inQuotes((folder / kReplaced).string()) +
           "; move them where they belong, and delete it";
  }
  const int64_t bytes = bytesIn(folder / kFiles);
  if (!removeAll(AT_FDCWD, folder.c_str())) {
    return whose + "cannot be removed: " + strerror(errno) + "; delete it";
  }
  return whose + "was removed, " + std::to_string(bytes / 1'000'000) + " MB";
}

}  // namespace velmor::render
