// Where a target's files with bare names go.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/kit/scratch_folder.h"

namespace fuzz {

/// While it lives the process stands in a folder, so that files can have bare names; afterwards it
/// is back where it was and the folder is empty.
class WorkingFolder {
 public:
  explicit WorkingFolder(const test_kit::ScratchFolder& folder)
      : m_folder(folder), m_before(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC)) {
    if (m_before < 0 || chdir(folder.path().c_str()) != 0) abort();
  }
  ~WorkingFolder() {
    if (fchdir(m_before) != 0) abort();
    close(m_before);
    m_folder.empty();
  }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

 private:
  const test_kit::ScratchFolder& m_folder;
  int m_before;
};

}  // namespace fuzz
