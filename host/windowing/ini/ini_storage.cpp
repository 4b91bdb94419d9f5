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

/// A file being made, under a name of its own; unlinked unless it has taken its place.
class NewFile {
 public:
  explicit NewFile(const std::string& target) : target_(target) {
    constexpr int kAttempts = 100;
    for (int attempt = 0; attempt < kAttempts && number_ < 0; ++attempt) {
      name_ = target + ".new" + std::to_string(::getpid()) + "-" + std::to_string(attempt);
      number_ = ::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
      if (number_ < 0 && errno != EEXIST) {
        break;
      }
    }
  }
  ~NewFile() {
    if (number_ >= 0) {
      ::close(number_);
      if (!placed_) {
        ::unlink(name_.c_str());
      }
    }
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  bool fill(std::string_view text) {
    struct stat before = {};
    const bool replaces = ::stat(target_.c_str(), &before) == 0;
    return number_ >= 0 && write_whole(number_, text) &&
           (!replaces || ::fchmod(number_, before.st_mode & 07777) == 0) && ::fsync(number_) == 0;
  }
  bool take_place() {
    placed_ = ::rename(name_.c_str(), target_.c_str()) == 0;
    return placed_;
  }

 private:
  std::string target_;
  std::string name_;
  int number_ = -1;
  bool placed_ = false;
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
  return file.fill(text()) && file.take_place();
}

}  // namespace velmor::windowing
