#include "host/render/output/working_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "disc/failure.h"
#include "disc/text/phrases.h"
#include "host/render/terminal/messages.h"

namespace velmor::render {

namespace {

constexpr int kAttempts = 2;

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

}  // namespace

WorkingFolder::WorkingFolder(const std::filesystem::path& parent)
    : m_path((parent / ".velmor-render-XXXXXX").string()) {
  if (mkdtemp(m_path.data())) return;
  throw Failure("nothing can be written to the folder " + disc::inQuotes(parent.string()) + ": " +
                std::string(strerror(errno)) + "; choose another with -o");
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

}  // namespace velmor::render
