// The folder that a target's files go to: made once, empty for every input, gone with the process.
#pragma once

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace fuzz {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "velmor-fuzz-XXXXXX").string();
    if (!mkdtemp(pattern.data())) abort();
    m_path = pattern;
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& path() const { return m_path; }
  void empty() const {
    for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
      std::filesystem::remove_all(entry.path());
    }
  }

 private:
  std::filesystem::path m_path;
};

/// While it lives the process stands in a folder, so that files can have bare names; afterwards it
/// is back where it was and the folder is empty.
class StandingIn {
 public:
  explicit StandingIn(const ScratchFolder& folder)
      : m_folder(folder), m_before(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)) {
    if (m_before < 0 || chdir(folder.path().c_str()) != 0) abort();
  }
  ~StandingIn() {
    if (fchdir(m_before) != 0) abort();
    close(m_before);
    m_folder.empty();
  }
  StandingIn(const StandingIn&) = delete;
  StandingIn& operator=(const StandingIn&) = delete;

 private:
  const ScratchFolder& m_folder;
  int m_before;
};

}  // namespace fuzz
