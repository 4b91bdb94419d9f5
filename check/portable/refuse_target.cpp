#include "check/portable/refuse_target.h"

#include <system_error>

#include "disc/text/phrases.h"

namespace velmor::check {

namespace fs = std::filesystem;

void refuseTarget(const fs::path& path, const fs::path& sheet, const std::vector<fs::path>& images,
                  bool force) {
  std::error_code error;
  if (fs::equivalent(path, sheet, error))
    throw Failure(disc::inQuotes(path.string()) +
                  " is the sheet that is checked, which stays as it is; choose another name");
  for (const fs::path& image : images)
    if (fs::equivalent(path, image, error))
      throw Failure(disc::inQuotes(path.string()) +
                    " is an image of the sheet, which stays as it is; choose another name");
  if (fs::is_directory(path, error))
    throw Failure(disc::inQuotes(path.string()) + " is a folder; name a file in it");
  if (!force && fs::exists(fs::symlink_status(path, error)))
    throw Failure(disc::inQuotes(path.string()) +
                  " is there already; choose another name, or give --force to replace it");
}

}  // namespace velmor::check
