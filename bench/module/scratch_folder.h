// A folder for what a benchmark writes; gone with the object.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <string>

class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "velmor-bench-XXXXXX").string();
    if (!mkdtemp(pattern.data())) abort();
    m_path = pattern;
  }
  ~ScratchFolder() { std::filesystem::remove_all(m_path); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string file(const char* name) const { return (m_path / name).string(); }

 private:
  std::filesystem::path m_path;
};
