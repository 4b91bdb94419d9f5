#include "disc/terminal/interrupt.h"

#include <sys/resource.h>

#include <cassert>
#include <cerrno>
#include <csignal>

namespace velmor {

namespace {

volatile sig_atomic_t g_signal = 0;
std::atomic<bool> g_interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

// The limit for the length of files: as it was, and one that lets no write through.
rlimit g_file_limit{};
rlimit g_no_writes{};
volatile sig_atomic_t g_writes_are_to_fail = 0;

extern "C" void noteSignal(int signal) {
  const int before = errno;
  g_signal = signal;
  g_interrupted = true;
  // No more than a system call, and so fit for a handler.
  if (g_writes_are_to_fail) setrlimit(RLIMIT_FSIZE, &g_no_writes);
  errno = before;
}

/// A signal that the caller had ignored (nohup, a shell's background job) stays ignored.
void watch(int number) {
  struct sigaction before {};
  sigaction(number, nullptr, &before);
  if (before.sa_handler == SIG_IGN) return;
  struct sigaction action {};
  action.sa_handler = noteSignal;
  sigaction(number, &action, nullptr);
}

}  // namespace

void watchForInterrupts() {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) watch(number);
  // A write beyond a file size limit, or to a terminal that is gone, is then an error of that write
  // and not the end of the process with its working folder left behind.
  signal(SIGXFSZ, SIG_IGN);
  signal(SIGPIPE, SIG_IGN);
}

void stopIfInterrupted() {
  if (g_signal != 0) throw Interrupted(g_signal);
}

InterruptedWritesFail::InterruptedWritesFail() {
  assert(!g_writes_are_to_fail);
  if (getrlimit(RLIMIT_FSIZE, &g_file_limit) != 0) return;
  g_no_writes = {0, g_file_limit.rlim_max};
  g_writes_are_to_fail = 1;
}

InterruptedWritesFail::~InterruptedWritesFail() {
  if (!g_writes_are_to_fail) return;
  g_writes_are_to_fail = 0;
  setrlimit(RLIMIT_FSIZE, &g_file_limit);
}

const std::atomic<bool>& interruption() {
  return g_interrupted;
}

int interruptedStatus() {
  assert(g_signal != 0);
  return Interrupted(g_signal).exitStatus();
}

}  // namespace velmor
