#include "disc/files/placement.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace velmor::disc {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const fs::path& target, const std::error_code& error) {
  throw fs::filesystem_error("a file cannot be put in its place", target, error);
}

}  // namespace

Placement::Placement(const fs::path& made, fs::path target, fs::path backup, bool replace)
    : m_target(std::move(target)), m_backup(std::move(backup)) {
  if (replace) keepOldFile();
  if (!replace && placeWithoutReplacing(made)) return;
  std::error_code error;
  fs::rename(made, m_target, error);
  if (!error) return;
  takeBack();
  fail(m_target, error);
}

void Placement::keepOldFile() {
  std::error_code error;
  const fs::file_status old = fs::symlink_status(m_target, error);
  // What cannot be looked at may well be there, and is not to be lost.
  if (old.type() == fs::file_type::none) fail(m_target, error);
  if (!fs::exists(old)) return;
  // A folder would move aside with all that is in it.
  if (fs::is_directory(old)) fail(m_target, std::make_error_code(std::errc::is_a_directory));
  fs::create_hard_link(m_target, m_backup, error);
  // File systems without second names: the old file moves aside for the moment.
  if (error) fs::rename(m_target, m_backup, error);
  if (error) fail(m_target, error);
  m_has_backup = true;
}

/// A second name is given only where nothing stands. False on a file system that knows none, where
/// a new empty file has taken the name for the rename that follows.
bool Placement::placeWithoutReplacing(const fs::path& made) {
  std::error_code error;
  fs::create_hard_link(made, m_target, error);
  if (!error) return true;
  if (error == std::errc::file_exists) fail(m_target, error);
  const int taken = ::open(m_target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (taken < 0) fail(m_target, {errno, std::generic_category()});
  ::close(taken);
  return false;
}

bool Placement::takeBack() {
  std::error_code error;
  if (m_has_backup) {
    fs::rename(m_backup, m_target, error);
    // Where both are still names of the one old file, the system lets both stand.
    if (!error) forgetBackup();
  } else {
    fs::remove(m_target, error);
  }
  return !error;
}

void Placement::forgetBackup() {
  std::error_code ignored;
  if (m_has_backup) fs::remove(m_backup, ignored);
}

bool takeBack(std::deque<Placement>& placed) {
  bool all = true;
  for (auto placement = placed.rbegin(); placement != placed.rend(); ++placement) {
    all = placement->takeBack() && all;
  }
  return all;
}

}  // namespace velmor::disc
