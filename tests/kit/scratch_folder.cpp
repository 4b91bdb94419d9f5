#include "tests/kit/scratch_folder.h"

#include <stdlib.h>
#include <unistd.h>  // where macOS has mkdtemp()

#include <algorithm>
#include <stdexcept>

namespace test_kit {

namespace fs = std::filesystem;

ScratchFolder::ScratchFolder() {
  std::string pattern = (fs::temp_directory_path() / "velmor-test-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr) {
    throw std::runtime_error("no temporary folder " + pattern);
  }
  m_path = pattern;
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  fs::remove_all(m_path, ignored);
}

std::vector<std::string> ScratchFolder::names() const {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(m_path)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

void ScratchFolder::empty() const {
  for (const fs::directory_entry& entry : fs::directory_iterator(m_path)) {
    fs::remove_all(entry.path());
  }
}

}  // namespace test_kit
