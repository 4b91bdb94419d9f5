// How an ini file is read and replaced.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "disc/files/draft.h"
#include "host/windowing/ini/ini_file.h"

namespace velmor::windowing {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : m_number(number) {}
  ~Descriptor() {
    if (m_number >= 0) {
      ::close(m_number);
    }
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return m_number; }

 private:
  int m_number;
};

/// The file that a path leads to, symbolic links followed; the path itself where there is none yet.
std::string followed(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), &std::free);
  return real ? real.get() : path;
}

}  // namespace

std::optional<IniFile> IniFile::load(const std::string& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (file.get() < 0) {
    return errno == ENOENT ? std::optional<IniFile>(IniFile()) : std::nullopt;
  }
  std::string text;
  char block[4096];
  ssize_t count = 0;
  while ((count = ::read(file.get(), block, sizeof block)) != 0) {
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count < 0) {
      return std::nullopt;
    }
    text.append(block, static_cast<size_t>(count));
  }
  return IniFile(text);
}

bool IniFile::store(const std::string& path) const {
  try {
    disc::Draft draft(followed(path));
    draft.write(text());
    draft.takePermissionsOfTarget();
    draft.sync();
    draft.takePlace();
    return true;
  } catch (const std::filesystem::filesystem_error&) {
    return false;
  }
}

}  // namespace velmor::windowing
