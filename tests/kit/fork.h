// The one place where tests fork.
#pragma once

#include <sys/resource.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace test_kit {

/// For a child: signals end it as they end what a person begins. A test that was begun in the
/// background, or by a program that ignores some, has inherited that.
inline void takeSignalsAsUsual() {
  for (const int number : {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM}) ::signal(number, SIG_DFL);
}

/// Runs `body` in a child, which ends with the status that it returns. Other threads do not exist
/// in the child: `body` takes no memory and no lock.
template <typename Body>
pid_t forkInto(Body body) {
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("cannot fork");
  if (child == 0) {
    takeSignalsAsUsual();
    ::_exit(body());
  }
  return child;
}

/// 128 and the number of the signal for a process that a signal ended.
inline int exitStatusOf(int wait_status) {
  return WIFEXITED(wait_status) ? WEXITSTATUS(wait_status) : 128 + WTERMSIG(wait_status);
}

/// Waits for the child's end; its exit status, and what it used.
inline int waitFor(pid_t child, rusage* used = nullptr) {
  int status = 0;
  ::wait4(child, &status, 0, used);
  return exitStatusOf(status);
}

/// Runs `body`, which sends itself SIGKILL at last, in a child of a process without other threads.
/// Throws when the child ends otherwise.
template <typename Body>
void runUntilKilled(Body body) {
  const pid_t child = forkInto([&body] {
    try {
      body();
    } catch (...) {
    }
    return 1;
  });
  if (waitFor(child) != 128 + SIGKILL) throw std::runtime_error("the child has ended by itself");
}

}  // namespace test_kit
