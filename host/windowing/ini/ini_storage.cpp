// How an ini file is read and replaced.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>

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

bool writeWhole(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR) {
      continue;
    }
    if (written <= 0) {
      return false;
    }
    text.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

/// A file being made, under a name of its own; unlinked unless it has taken its place.
class NewFile {
 public:
  explicit NewFile(const std::string& target) : m_target(target) {
    constexpr int kAttempts = 100;
    for (int attempt = 0; attempt < kAttempts && m_number < 0; ++attempt) {
      m_name = target + ".new" + std::to_string(::getpid()) + "-" + std::to_string(attempt);
      m_number = ::open(m_name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
      if (m_number < 0 && errno != EEXIST) {
        break;
      }
    }
  }
  ~NewFile() {
    if (m_number >= 0) {
      ::close(m_number);
      if (!m_placed) {
        ::unlink(m_name.c_str());
      }
    }
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  bool fill(std::string_view text) {
    struct stat before = {};
    const bool replaces = ::stat(m_target.c_str(), &before) == 0;
    return m_number >= 0 && writeWhole(m_number, text) &&
           (!replaces || ::fchmod(m_number, before.st_mode & 07777) == 0) && ::fsync(m_number) == 0;
  }
  bool takePlace() {
    m_placed = ::rename(m_name.c_str(), m_target.c_str()) == 0;
    return m_placed;
  }

 private:
  std::string m_target;
  std::string m_name;
  int m_number = -1;
  bool m_placed = false;
};

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
  NewFile file(followed(path));
  return file.fill(text()) && file.takePlace();
}

}  // namespace velmor::windowing
