// How an ini file is read and replaced.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>

#include "host/windowing/ini_file.h"

namespace velmor::windowing {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) {
      ::close(number_);
    }
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return number_; }

 private:
  int number_;
};

/// The file that a path leads to, symbolic links followed; the path itself where there is none yet.
std::string followed(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), &std::free);
  return real ? real.get() : path;
}

bool write_whole(int file, std::string_view text) {
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

/// New files are readable by everybody the process's mask allows, which cannot be asked for
/// without setting it.
mode_t usual_permissions() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

bool fill(int file, std::string_view text, const std::string& path) {
  struct stat before = {};
  const mode_t permissions =
      ::stat(path.c_str(), &before) == 0 ? before.st_mode & 07777 : usual_permissions();
  return write_whole(file, text) && ::fchmod(file, permissions) == 0 && ::fsync(file) == 0;
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
  const std::string target = followed(path);
  std::string beside = target + ".XXXXXX";
  const Descriptor file(::mkostemp(beside.data(), O_CLOEXEC));
  if (file.get() < 0) {
    return false;
  }
  if (fill(file.get(), text(), target) && ::rename(beside.c_str(), target.c_str()) == 0) {
    return true;
  }
  ::unlink(beside.c_str());
  return false;
}

}  // namespace velmor::windowing
