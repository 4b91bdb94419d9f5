#include "tests/check/reader_process.h"

#include <sys/resource.h>

#include <cstdlib>
#include <stdexcept>

namespace velmor::check::test {

namespace {

/// A reader that a sheet leads astray may write until the disk is full, or compute for ever: chdman
/// was seen to.
void limitReader() {
  constexpr rlim_t kMostBytes = rlim_t{256} << 20;
  const rlimit bytes{kMostBytes, kMostBytes};
  ::setrlimit(RLIMIT_FSIZE, &bytes);
  const rlimit seconds{20, 20};
  ::setrlimit(RLIMIT_CPU, &seconds);
}

}  // namespace

ProcessResult runProcess(const std::vector<std::string>& arguments, const std::string& folder,
                         const std::string& stop_at) {
  const char* path = std::getenv("PATH");
  test_kit::ProcessOptions options;
  options.folder = folder;
  options.in_child = limitReader;
  options.environment = {"PATH=" + std::string(path != nullptr ? path : ""), "HOME=" + folder,
                         "LC_ALL=C.UTF-8", "SDL_VIDEODRIVER=dummy", "SDL_AUDIODRIVER=dummy"};
  options.stop_at = stop_at;
  options.limit = std::chrono::minutes(3);
  ProcessResult ended = test_kit::runProcess(arguments, options);
  if (ended.took_too_long)
    throw std::runtime_error(arguments.front() + " did not end within three minutes");
  return ended;
}

}  // namespace velmor::check::test
