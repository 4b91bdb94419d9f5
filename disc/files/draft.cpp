#include "disc/files/draft.h"

#include <sys/stat.h>
#include <unistd.h>

#include <system_error>
#include <utility>

namespace velmor::disc {

namespace fs = std::filesystem;

namespace {

constexpr int kMostNames = 100;

}  // namespace

Draft::Draft(fs::path target) : m_target(std::move(target)) {
  for (int n = 0; !m_file; ++n) {
    m_path = m_target.string() + '.' + std::to_string(::getpid()) + '-' + std::to_string(n);
    try {
      m_file.emplace(m_path, m_target);
    } catch (const fs::filesystem_error& error) {
      if (error.code() != std::errc::file_exists || n == kMostNames) throw;
    }
  }
}

Draft::~Draft() {
  // Once it is in its place this name is gone.
  ::unlink(m_path.c_str());
}

void Draft::takePermissionsOfTarget() {
  struct stat old {};
  if (::stat(m_target.c_str(), &old) == 0) m_file->setPermissions(old.st_mode & 07777);
}

void Draft::takePlace() {
  std::error_code error;
  fs::rename(m_path, m_target, error);
  if (error) throw fs::filesystem_error("a file cannot be written", m_target, error);
}

}  // namespace velmor::disc
