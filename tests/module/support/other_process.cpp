#include "tests/module/support/other_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace support_test {
namespace {

bool lockHere(const char* path, int operation) {
  const int fd = open(path, O_RDWR | O_CLOEXEC);
  return fd >= 0 && flock(fd, operation | LOCK_NB) == 0;
}

}  // namespace

bool anotherProcessCanLock(const std::string& path, int operation) {
  const pid_t child = fork();
  if (child == 0) _exit(lockHere(path.c_str(), operation) ? 0 : 1);
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool startedProgramInherits(const std::string& path) {
  FILE* listing = popen("readlink /proc/$$/fd/*", "r");
  EXPECT_NE(listing, nullptr);
  std::string targets;
  char chunk[512];
  while (fgets(chunk, sizeof chunk, listing)) targets += chunk;
  EXPECT_FALSE(targets.empty());
  pclose(listing);
  return targets.find(path + "\n") != std::string::npos;
}

LockHolder::LockHolder(const std::string& path, int operation) {
  int ready[2];
  int until[2];
  EXPECT_EQ(pipe(ready), 0);
  EXPECT_EQ(pipe(until), 0);
  m_process = fork();
  if (m_process == 0) {
    close(until[1]);
    const char answer = lockHere(path.c_str(), operation) ? 1 : 0;
    if (write(ready[1], &answer, 1) != 1) _exit(1);
    char end = 0;
    while (read(until[0], &end, 1) > 0) {
    }
    _exit(0);
  }
  close(until[0]);
  close(ready[1]);
  m_until = until[1];
  char answer = 0;
  EXPECT_EQ(read(ready[0], &answer, 1), 1);
  EXPECT_EQ(answer, 1) << "the other process has not got the lock on " << path;
  close(ready[0]);
}

LockHolder::~LockHolder() {
  close(m_until);
  int status = 0;
  waitpid(m_process, &status, 0);
}

}  // namespace support_test
