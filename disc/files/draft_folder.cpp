#include "disc/files/draft_folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <new>
#include <system_error>
#include <utility>

#include "disc/text/phrases.h"

namespace velmor::disc {

namespace fs = std::filesystem;

namespace {

constexpr const char* kNameBegin = ".velmor-ddp-";
constexpr const char* kAside = ".old";  ///< ends the name of what is being replaced

/// Without slashes at its end, and with a link to a folder followed: what takes the place is the
/// folder itself.
fs::path plainTarget(const fs::path& target) {
  std::error_code error;
  if (fs::is_directory(target, error)) {
    fs::path followed = fs::canonical(target, error);
    if (!error) return followed;
  }
  return target.has_filename() ? target : target.parent_path();
}

fs::path folderOf(const fs::path& target) {
  return target.has_parent_path() ? target.parent_path() : fs::path(".");
}

/// What a folder that is made the usual way would have.
mode_t usualPermissions() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0777 & ~mask;
}

void syncFolder(const fs::path& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  ::fsync(descriptor);
  ::close(descriptor);
}

}  // namespace

DraftFolder::DraftFolder(const fs::path& target, bool force, IsReplaced replaced)
    : m_target(plainTarget(target)), m_force(force), m_replaced(std::move(replaced)) {
  checkTarget();
  removeAbandoned();
  const std::string& made =
      m_hidden.emplace(folderOf(m_target), kNameBegin, "choose another place").path();
  try {
    m_path = made;
  } catch (const std::bad_alloc&) {
    removeWhole(made.c_str());
    throw;
  }
}

DraftFolder::~DraftFolder() {
  removeWhole(m_path.c_str());
}

void DraftFolder::removeAbandoned() {
  const fs::path parent = folderOf(m_target);
  forEachAbandoned(parent, kNameBegin, [this](const fs::path& folder) {
    m_warnings.push_back(disc::removeAbandoned(folder, bytesIn(folder)));
  });
  std::error_code ignored;
  for (const fs::path& entry : entriesOf(parent, ignored)) {
    const std::string name = entry.filename().string();
    if (name.starts_with(kNameBegin) && name.ends_with(kAside))
      m_warnings.push_back(leftByKilledRun(entry) +
                           "stays: it is what was to be replaced; move it where it belongs, or "
                           "delete it");
  }
}

void DraftFolder::checkTarget() {
  const std::string name = inQuotes(m_target.string());
  if (m_target.empty() || m_target.filename() == ".." || m_target.filename() == "." ||
      m_target == m_target.root_path())
    throw Failure(name + " is no name for a new folder; choose another");
  std::error_code error;
  const fs::file_status there = fs::symlink_status(m_target, error);
  if (!fs::exists(there)) {
    if (fs::is_directory(folderOf(m_target), error)) return;
    throw Failure("there is no folder " + inQuotes(folderOf(m_target).string()) + " to make " +
                  name + " in; make it, or choose another place");
  }
  if (!fs::is_directory(there))
    throw Failure(name + " is there already and is no folder; choose another name");
  if (fs::equivalent(m_target, ".", error))
    throw Failure(name +
                  " is the folder that you are in, which cannot be replaced; go to another, "
                  "or name a new one");
  m_carried.clear();
  const std::vector<fs::path> entries = entriesOf(m_target, error);
  for (const fs::path& entry : entries) {
    const std::string file = entry.filename().string();
    std::error_code unknown;
    if (m_force && fs::is_directory(fs::symlink_status(entry, unknown)))
      throw Failure(name + " holds the folder " + inQuotes(file) +
                    ", which is not replaced; move it away, or choose another place");
    if (!m_replaced(file)) m_carried.push_back(file);
  }
  if (error) throw Failure(name + " cannot be read: " + error.message() + "; choose another place");
  if (!entries.empty() && !m_force)
    throw Failure(name +
                  " is not empty; choose a new folder, or give --force to replace files of "
                  "the same names in it");
}

/// Files that are in no set get a second name in the new folder: at no moment are they nowhere.
void DraftFolder::carryOver() {
  for (const std::string& file : m_carried) {
    std::error_code error;
    fs::create_hard_link(m_target / file, m_path / file, error);
    if (error)
      throw Failure(inQuotes((m_target / file).string()) + " cannot be kept: " + error.message() +
                    "; move it away, or choose another place");
  }
}

/// In one step where the file system can: the old folder is the hidden one then.
void DraftFolder::exchange() {
  if (::renameat2(AT_FDCWD, m_path.c_str(), AT_FDCWD, m_target.c_str(), RENAME_EXCHANGE) == 0)
    return;
  if (errno != EINVAL && errno != ENOSYS)
    throw Failure(inQuotes(m_target.string()) + " cannot be replaced: " +
                  std::generic_category().message(errno) + "; choose another place");
  const fs::path aside = m_path.string() + kAside;
  std::error_code error;
  fs::rename(m_target, aside, error);
  if (!error) {
    fs::rename(m_path, m_target, error);
    std::error_code back;
    fs::rename(aside, error ? m_target : m_path, back);
  }
  if (error)
    throw Failure(inQuotes(m_target.string()) + " cannot be replaced: " + error.message() +
                  "; choose another place");
}

void DraftFolder::takePlace() {
  checkTarget();  // again, since another program may have written there meanwhile
  struct stat old {};
  const bool replaces = ::stat(m_target.c_str(), &old) == 0;
  ::chmod(m_path.c_str(), replaces ? old.st_mode & 07777 : usualPermissions());
  carryOver();
  syncFolder(m_path);
  if (replaces && m_force)
    exchange();
  else if (::rename(m_path.c_str(), m_target.c_str()) != 0)
    throw Failure(inQuotes(m_target.string()) + " cannot be put in its place: " +
                  std::generic_category().message(errno) + "; choose another place");
  syncFolder(folderOf(m_target));
}

}  // namespace velmor::disc
