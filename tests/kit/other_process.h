// What other processes see of a file.
#pragma once

#include <string>

namespace test_kit {

/// Whether another process could take this lock (LOCK_SH or LOCK_EX) on the file now.
bool anotherProcessCanLock(const std::string& path, int operation);

/// Whether a program started now would inherit a descriptor of the file.
bool startedProgramInherits(const std::string& path);

/// Another process that holds a lock on the file while this lives.
class LockHolder {
 public:
  LockHolder(const std::string& path, int operation);
  ~LockHolder();
  LockHolder(const LockHolder&) = delete;
  LockHolder& operator=(const LockHolder&) = delete;

 private:
  int m_process = -1;
  int m_until = -1;  ///< write end of the pipe whose closing ends the process
};

}  // namespace test_kit
