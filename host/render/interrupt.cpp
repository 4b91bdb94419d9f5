#include "host/render/interrupt.h"

#include <csignal>

#include "host/render/failure.h"

namespace velmor::render {

namespace {

volatile sig_atomic_t g_signal = 0;

extern "C" void noteSignal(int signal) {
  g_signal = signal;
}

}  // namespace

void watchForInterrupts() {
  struct sigaction action {};
  action.sa_handler = noteSignal;
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
  // A write beyond a file size limit is then an error with a sentence, not the end of the process.
  signal(SIGXFSZ, SIG_IGN);
}

void stopIfInterrupted() {
  if (g_signal != 0) throw Interrupted(g_signal);
}

}  // namespace velmor::render
