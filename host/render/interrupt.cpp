#include "host/render/interrupt.h"

#include <csignal>

#include "host/render/failure.h"

namespace velmor::render {

namespace {

volatile sig_atomic_t g_signal = 0;
std::atomic<bool> g_interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

extern "C" void noteSignal(int signal) {
  g_signal = signal;
  g_interrupted = true;
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

const std::atomic<bool>& interruption() {
  return g_interrupted;
}

int interruptedStatus() {
  return Interrupted(g_signal).exitStatus();
}

}  // namespace velmor::render
