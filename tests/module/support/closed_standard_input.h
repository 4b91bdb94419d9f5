// A process without standard input, as a workstation may be: the next file it opens is descriptor
// 0.
#pragma once

#include <fcntl.h>
#include <unistd.h>

namespace support_test {

/// Closes standard input while it lives.
class ClosedStandardInput {
 public:
  ClosedStandardInput() { close(STDIN_FILENO); }
  ~ClosedStandardInput() {
    if (m_kept < 0) return;
    dup2(m_kept, STDIN_FILENO);
    close(m_kept);
  }
  ClosedStandardInput(const ClosedStandardInput&) = delete;
  ClosedStandardInput& operator=(const ClosedStandardInput&) = delete;

  /// Whether a file that was opened since then has taken the place.
  static bool isTaken() { return fcntl(STDIN_FILENO, F_GETFD) >= 0; }

 private:
  const int m_kept = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3);  ///< -1 when there was none
};

}  // namespace support_test
