#include "disc/audio/readable_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "disc/failure.h"
#include "disc/text/phrases.h"

namespace velmor::disc {
namespace {

[[noreturn]] void refuseToOpen(const std::string& path, const std::string& reason) {
  throw Failure("cannot read " + inQuotes(path) + ": " + reason);
}

std::string reasonOf(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return "there is no such file; check its name and folder";
    case EACCES:
    case EPERM:
      return "permission is missing; make the file readable or copy it";
    default:
      return std::generic_category().message(error) + "; check the file and its volume";
  }
}

}  // namespace

// Not blocking: a pipe without a writer would otherwise hold the program in `open`.
ReadableFile::ReadableFile(const std::string& path)
    : m_path(path), m_descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
  if (m_descriptor < 0) refuseToOpen(path, reasonOf(errno));
  struct stat status {};
  const int failure = ::fstat(m_descriptor, &status) == 0 ? 0 : errno;
  if (failure == 0 && S_ISREG(status.st_mode)) {
    m_size = status.st_size;
    return;
  }
  ::close(m_descriptor);
  if (failure != 0) refuseToOpen(path, reasonOf(failure));
  if (S_ISDIR(status.st_mode)) refuseToOpen(path, "it is a folder; name the files in it");
  refuseToOpen(path, "it is a pipe or a device; save it as a file first");
}

ReadableFile::~ReadableFile() {
  if (m_descriptor >= 0) ::close(m_descriptor);
}

int64_t ReadableFile::read(void* to, size_t count) {
  const ssize_t got = ::pread(m_descriptor, to, count, m_position);
  if (got < 0) {
    m_failure = errno;
    m_position = m_size;
    return 0;
  }
  m_position += got;
  return got;
}

void ReadableFile::checkReading() const {
  if (m_failure != 0) refuseToOpen(m_path, reasonOf(m_failure));
}

std::string ReadableFile::contents() const {
  std::string text(static_cast<size_t>(m_size), '\0');
  size_t filled = 0;
  while (filled < text.size()) {
    const ssize_t got = ::read(m_descriptor, text.data() + filled, text.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      throw Failure("cannot read " + inQuotes(m_path) + ": " +
                    std::generic_category().message(errno) + "; check its volume");
    }
    if (got == 0) break;
    filled += static_cast<size_t>(got);
  }
  text.resize(filled);
  return text;
}

}  // namespace velmor::disc
