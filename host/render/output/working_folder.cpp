#include "host/render/output/working_folder.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "disc/text/phrases.h"
#include "host/render/terminal/messages.h"

namespace velmor::render {

namespace fs = std::filesystem;

namespace {

constexpr int kAttempts = 2;
constexpr const char* kNameBegin = ".velmor-render-";
constexpr const char* kAdvice = "choose another with -o";

/// Whether an old album's file lies in `folder` and nowhere else: a process that was killed while
/// it put its files in their place may have come no further than to take the old ones away.
bool holdsOnlyCopy(const fs::path& folder) {
  std::error_code error;
  for (const fs::path& file : disc::entriesOf(folder, error)) {
    struct stat status {};
    if (lstat(file.c_str(), &status) != 0 || status.st_nlink < 2) return true;
  }
  return error && error != std::errc::no_such_file_or_directory;
}

}  // namespace

WorkingFolder::WorkingFolder(const fs::path& parent) : m_folder(parent, kNameBegin, kAdvice) {
  try {
    if (mkdir(files().c_str(), 0700) != 0) throw disc::cannotWriteTo(parent, errno, kAdvice);
  } catch (...) {  // want of memory included
    remove();
    throw;
  }
}

WorkingFolder::~WorkingFolder() {
  remove();
}

void WorkingFolder::nameParent() {
  disc::removeWhole(replaced().c_str());
  disc::removeWhole(files().c_str());
  std::error_code error;
  fs::create_directory_symlink("..", files(), error);
}

void WorkingFolder::remove() noexcept {
  if (m_stays) return;
  const char* const path = m_folder.path().c_str();
  for (int i = 0; i < kAttempts; ++i) {
    if (disc::removeWhole(path)) return;
  }
  printFolderThatStays(path, strerror(errno));
}

std::string WorkingFolder::leave() noexcept {
  m_stays = true;
  return m_folder.takePath();
}

std::vector<std::string> WorkingFolder::removeAbandoned(const fs::path& parent) {
  std::vector<std::string> told;
  disc::forEachAbandoned(parent, kNameBegin,
                         [&told](const fs::path& folder) { told.push_back(removeOne(folder)); });
  return told;
}

/// Removes a folder that nobody holds, or does not; the clause about it.
std::string WorkingFolder::removeOne(const fs::path& folder) {
  if (holdsOnlyCopy(folder / kReplaced)) {
    return disc::leftByKilledRun(folder) + "stays: files of an older album are in " +
           disc::inQuotes((folder / kReplaced).string()) +
           "; move them where they belong, and delete it";
  }
  return disc::removeAbandoned(folder, disc::bytesIn(folder / kFiles));
}

}  // namespace velmor::render
