#include "disc/files/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace velmor::disc {

namespace {

[[noreturn]] void fail(const std::filesystem::path& told, int error) {
  throw std::filesystem::filesystem_error("a file cannot be written", told,
                                          std::error_code(error, std::generic_category()));
}

}  // namespace

NewFile::NewFile(const std::filesystem::path& path, std::filesystem::path told)
    : m_told(std::move(told)),
      m_descriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)) {
  if (m_descriptor < 0) fail(m_told, errno);
}

NewFile::~NewFile() {
  ::close(m_descriptor);
}

void NewFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(m_descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) fail(m_told, written < 0 ? errno : ENOSPC);
    bytes.remove_prefix(static_cast<size_t>(written));
  }
}

void NewFile::setPermissions(unsigned mode) {
  if (::fchmod(m_descriptor, mode) != 0) fail(m_told, errno);
}

void NewFile::sync() {
  if (::fsync(m_descriptor) != 0) fail(m_told, errno);
}

}  // namespace velmor::disc
