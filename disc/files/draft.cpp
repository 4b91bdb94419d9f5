#include "disc/files/draft.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace velmor::disc {

namespace fs = std::filesystem;

namespace {

constexpr int kMostNames = 100;

[[noreturn]] void fail(const fs::path& target, int error) {
  throw fs::filesystem_error("a file cannot be written", target,
                             std::error_code(error, std::generic_category()));
}

}  // namespace

Draft::Draft(fs::path target) : m_target(std::move(target)) {
  for (int n = 0; m_descriptor < 0; ++n) {
    m_path = m_target.string() + '.' + std::to_string(::getpid()) + '-' + std::to_string(n);
    m_descriptor = ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (m_descriptor < 0 && (errno != EEXIST || n == kMostNames)) fail(m_target, errno);
  }
}

Draft::~Draft() {
  ::close(m_descriptor);
  // Once it is in its place this name is gone.
  ::unlink(m_path.c_str());
}

void Draft::write(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(m_descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) fail(m_target, written < 0 ? errno : ENOSPC);
    text.remove_prefix(static_cast<size_t>(written));
  }
}

void Draft::takePermissionsOfTarget() {
  struct stat old {};
  if (::stat(m_target.c_str(), &old) != 0) return;
  if (::fchmod(m_descriptor, old.st_mode & 07777) != 0) fail(m_target, errno);
}

void Draft::sync() {
  if (::fsync(m_descriptor) != 0) fail(m_target, errno);
}

void Draft::takePlace() {
  if (::rename(m_path.c_str(), m_target.c_str()) != 0) fail(m_target, errno);
}

}  // namespace velmor::disc
