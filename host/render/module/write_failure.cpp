#include "host/render/module/write_failure.h"

#include <sys/resource.h>

#include <filesystem>

#include "disc/failure.h"
#include "host/render/module/host_callbacks.h"

namespace velmor::render {

std::string fileSizeLimitMet(const std::string& path) {
  rlimit limit{};
  if (getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return {};
  std::error_code error;
  const uintmax_t bytes = std::filesystem::file_size(path, error);
  if (error || bytes < limit.rlim_cur) return {};
  return "no file may grow beyond " + std::to_string(limit.rlim_cur) +
         " bytes here; raise that limit (ulimit -f) and render again";
}

void stopOnWriteFailure(const std::string& path) {
  const auto failure = writeFailure();
  if (!failure) return;
  if (const std::string limit = fileSizeLimitMet(path); !limit.empty()) {
    throw Failure("the image could not be written: " + limit);
  }
  if (*failure == kDiskOutOfSpace) {
    throw Failure(
        "the disk is full: the image could not be written; free some space (a minute "
        "takes 10.6 MB), or choose another place with -o");
  }
  throw Failure(
      "the image could not be written: the system reports a write error on the disk of the output "
      "folder; choose another place with -o");
}

}  // namespace velmor::render
