#include "tests/kit/other_process.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

#include "tests/kit/child_process.h"
#include "tests/kit/fork.h"

namespace test_kit {

namespace {

bool lockHere(const char* path, int operation) {
  const int fd = ::open(path, O_RDWR | O_CLOEXEC);
  return fd >= 0 && ::flock(fd, operation | LOCK_NB) == 0;
}

}  // namespace

bool anotherProcessCanLock(const std::string& path, int operation) {
  return waitFor(forkInto([&] { return lockHere(path.c_str(), operation) ? 0 : 1; })) == 0;
}

bool startedProgramInherits(const std::string& path) {
  const std::string targets = runShell("readlink /proc/$$/fd/*").out;
  if (targets.empty()) throw std::runtime_error("the descriptors of a process cannot be listed");
  return targets.find(path + "\n") != std::string::npos;
}

LockHolder::LockHolder(const std::string& path, int operation) {
  std::array<int, 2> ready{};
  std::array<int, 2> until{};
  if (::pipe(ready.data()) != 0 || ::pipe(until.data()) != 0) throw std::runtime_error("no pipe");
  m_process = forkInto([&] {
    ::close(until[1]);
    const char locked = lockHere(path.c_str(), operation) ? 1 : 0;
    if (::write(ready[1], &locked, 1) != 1) return 1;
    char end = 0;
    while (::read(until[0], &end, 1) > 0) {
    }
    return 0;
  });
  ::close(until[0]);
  ::close(ready[1]);
  m_until = until[1];
  char locked = 0;
  const bool answered = ::read(ready[0], &locked, 1) == 1;
  ::close(ready[0]);
  if (!answered || locked != 1) {
    throw std::runtime_error("the other process has not got the lock on " + path);
  }
}

LockHolder::~LockHolder() {
  ::close(m_until);
  waitFor(m_process);
}

}  // namespace test_kit
