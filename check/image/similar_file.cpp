#include "check/image/similar_file.h"

#include <string>
#include <system_error>

#include "disc/files/held_folder.h"
#include "disc/text/words.h"

namespace velmor::check {

namespace fs = std::filesystem;

std::optional<fs::path> similarFile(const fs::path& missing, const fs::path& folder) {
  const std::string whole = missing.string();
  const std::string wanted = disc::upperCase(whole.substr(whole.find_last_of("/\\") + 1));
  if (wanted.empty()) return std::nullopt;
  std::error_code error;
  // The first by name, so that the answer does not hang on the order of the folder.
  std::optional<fs::path> found;
  for (const fs::path& entry : disc::entriesOf(folder.empty() ? "." : folder, error)) {
    const fs::path name = entry.filename();
    if (disc::upperCase(name.string()) == wanted && (!found || name < *found)) found = name;
  }
  return found;
}

}  // namespace velmor::check
