#include "tools/cdcheck/portable/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "tools/cdcheck/check.h"

namespace velmor::cdcheck {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& path, int error) {
  throw CheckError("'" + path.string() + "' cannot be written: " +
                   std::generic_category().message(error) + ". Choose another place.");
}

/// A file under a name of its own beside `path`, gone unless it was moved away.
class Draft {
 public:
  explicit Draft(const fs::path& path) : target_(path), name_(path.string() + ".XXXXXX") {
    descriptor_ = ::mkostemp(name_.data(), O_CLOEXEC);
    if (descriptor_ < 0) fail(target_, errno);
  }
  ~Draft() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!name_.empty()) ::unlink(name_.c_str());
  }
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;

  void write(const std::string& text) {
    size_t done = 0;
    while (done < text.size()) {
      const ssize_t got = ::write(descriptor_, text.data() + done, text.size() - done);
      if (got < 0 && errno == EINTR) continue;
      if (got <= 0) fail(target_, got < 0 ? errno : ENOSPC);
      done += static_cast<size_t>(got);
    }
    const mode_t mask = ::umask(0);
    ::umask(mask);
    if (::fchmod(descriptor_, 0666 & ~mask) != 0 || ::fsync(descriptor_) != 0) fail(target_, errno);
  }

  void moveIntoPlace(bool replace) {
    // A link, unlike a rename, does not replace what stands there.
    const int result =
        replace ? ::rename(name_.c_str(), target_.c_str()) : ::link(name_.c_str(), target_.c_str());
    if (result != 0) fail(target_, errno);
    if (replace) name_.clear();
  }

 private:
  fs::path target_;
  std::string name_;
  int descriptor_ = -1;
};

}  // namespace

void refuseTarget(const fs::path& path, const fs::path& sheet, const std::vector<fs::path>& images,
                  bool force) {
  std::error_code error;
  if (fs::equivalent(path, sheet, error))
    throw CheckError("'" + path.string() +
                     "' is the sheet that is checked, which stays as it is: choose another name.");
  for (const fs::path& image : images)
    if (fs::equivalent(path, image, error))
      throw CheckError("'" + path.string() +
                       "' is an image of the sheet, which stays as it is: choose another name.");
  if (fs::is_directory(path, error))
    throw CheckError("'" + path.string() + "' is a folder: name a file in it.");
  if (!force && fs::exists(fs::symlink_status(path, error)))
    throw CheckError("'" + path.string() +
                     "' is there already: choose another name, or give --force to replace it.");
}

void writeWhole(const fs::path& path, const std::string& text, bool force) {
  Draft draft(path);
  draft.write(text);
  draft.moveIntoPlace(force);
}

}  // namespace velmor::cdcheck
