#include "check/portable/whole_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <list>
#include <system_error>

#include "check/check.h"
#include "disc/failure.h"

namespace velmor::check {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& path, int error) {
  throw Failure("'" + path.string() + "' cannot be written: " +
                std::generic_category().message(error) + ". Choose another place.");
}

/// A file under a name of its own beside `path`, gone unless it was moved away.
class Draft {
 public:
  explicit Draft(const fs::path& path) : m_target(path) {
    for (int n = 0; m_descriptor < 0; ++n) {
      m_name = path.string() + '.' + std::to_string(::getpid()) + '-' + std::to_string(n);
      m_descriptor = create(m_name);
      if (m_descriptor < 0 && (errno != EEXIST || n == kMostNames)) fail(m_target, errno);
    }
  }
  ~Draft() {
    if (m_descriptor >= 0) ::close(m_descriptor);
    if (!m_name.empty()) ::unlink(m_name.c_str());
  }
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;

  void write(const std::string& text) {
    size_t done = 0;
    while (done < text.size()) {
      const ssize_t got = ::write(m_descriptor, text.data() + done, text.size() - done);
      if (got < 0 && errno == EINTR) continue;
      if (got <= 0) fail(m_target, got < 0 ? errno : ENOSPC);
      done += static_cast<size_t>(got);
    }
    if (::fsync(m_descriptor) != 0) fail(m_target, errno);
  }

  void moveIntoPlace(bool replace) {
    if (!replace) takeName();
    if (::rename(m_name.c_str(), m_target.c_str()) != 0) {
      const int error = errno;
      if (!replace) ::unlink(m_target.c_str());
      fail(m_target, error);
    }
    m_name.clear();
  }

 private:
  static constexpr int kMostNames = 100;

  static int create(const std::string& name) {
    return ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  }

  /// A rename replaces what stands there, and a link is not known to the file systems of memory
  /// sticks: a new empty file makes sure that nothing stood there.
  void takeName() const {
    const int taken = create(m_target.string());
    if (taken < 0) fail(m_target, errno);
    ::close(taken);
  }

  fs::path m_target;
  std::string m_name;
  int m_descriptor = -1;
};

}  // namespace

void refuseTarget(const fs::path& path, const fs::path& sheet, const std::vector<fs::path>& images,
                  bool force) {
  std::error_code error;
  if (fs::equivalent(path, sheet, error))
    throw Failure("'" + path.string() +
                  "' is the sheet that is checked, which stays as it is: choose another name.");
  for (const fs::path& image : images)
    if (fs::equivalent(path, image, error))
      throw Failure("'" + path.string() +
                    "' is an image of the sheet, which stays as it is: choose another name.");
  if (fs::is_directory(path, error))
    throw Failure("'" + path.string() + "' is a folder: name a file in it.");
  if (!force && fs::exists(fs::symlink_status(path, error)))
    throw Failure("'" + path.string() +
                  "' is there already: choose another name, or give --force to replace it.");
}

void writeWhole(const fs::path& path, const std::string& text, bool force) {
  writeWhole({{path, text}}, force);
}

void writeWhole(const std::vector<TextFile>& files, bool force) {
  std::list<Draft> drafts;
  for (const TextFile& file : files) drafts.emplace_back(file.path).write(file.text);
  for (Draft& draft : drafts) draft.moveIntoPlace(force);
}

}  // namespace velmor::check
