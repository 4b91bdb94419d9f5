#include "tests/check/reader_process.h"

#include <cstdlib>

namespace velmor::check::test {

ProcessResult runProcess(const std::vector<std::string>& arguments, const std::string& folder,
                         const std::string& stop_at) {
  const char* path = std::getenv("PATH");
  test_kit::ProcessOptions options;
  options.folder = folder;
  options.environment = {"PATH=" + std::string(path != nullptr ? path : ""), "HOME=" + folder,
                         "LC_ALL=C.UTF-8", "SDL_VIDEODRIVER=dummy", "SDL_AUDIODRIVER=dummy"};
  options.stop_at = stop_at;
  options.limit = std::chrono::seconds(20);
  return test_kit::runProcess(arguments, options);
}

}  // namespace velmor::check::test
