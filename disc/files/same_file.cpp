#include "disc/files/same_file.h"

#include <system_error>

namespace velmor::disc {

namespace fs = std::filesystem;

bool sameFile(const fs::path& a, const fs::path& b) {
  std::error_code of_a, of_b, of_both;
  if (fs::equivalent(a, b, of_both)) return true;
  const fs::path whole_a = fs::weakly_canonical(a, of_a);
  const fs::path whole_b = fs::weakly_canonical(b, of_b);
  return !of_a && !of_b && whole_a == whole_b;
}

}  // namespace velmor::disc
