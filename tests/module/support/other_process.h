// What other processes see of a file.
#pragma once

#include <string>

namespace support_test {

/// Whether another process could take this lock (LOCK_SH or LOCK_EX) on the file now.
bool AnotherProcessCanLock(const std::string& path, int operation);

/// Whether a program started now would inherit a descriptor of the file.
bool StartedProgramInherits(const std::string& path);

/// Another process that holds a lock on the file while this lives.
class LockHolder {
 public:
  LockHolder(const std::string& path, int operation);
  ~LockHolder();
  LockHolder(const LockHolder&) = delete;
  LockHolder& operator=(const LockHolder&) = delete;

 private:
  int process_ = -1;
  int until_ = -1;  ///< write end of the pipe whose closing ends the process
};

}  // namespace support_test
