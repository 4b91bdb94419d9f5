// Ctrl-C, a hang-up or a request to terminate: noted when it comes, acted on where the work can
// stop cleanly.
#pragma once

#include <atomic>
#include <stdexcept>

#include "disc/failure.h"

namespace velmor {

/// The user has interrupted the run. Not a `Failure`: nothing went wrong.
class Interrupted : public std::runtime_error {
 public:
  explicit Interrupted(int signal) : std::runtime_error("interrupted"), m_signal(signal) {}
  /// What a shell expects: 128 and the signal's number.
  int exitStatus() const { return 128 + m_signal; }

 private:
  int m_signal;
};

/// From now on SIGINT, SIGTERM and SIGHUP are noted instead of ending the process. Once, on the
/// main thread, before others are begun.
void watchForInterrupts();

/// Throws `Interrupted` when one of these signals has come. Any thread.
void stopIfInterrupted();

/// While it lives, a signal also makes every further write of this process to a file fail, so that
/// code that looks at no signal ends its writing soon: a silence of hours is gigabytes. What was
/// written must then be thrown away. One at a time.
class InterruptedWritesFail {
 public:
  InterruptedWritesFail();
  ~InterruptedWritesFail();
  InterruptedWritesFail(const InterruptedWritesFail&) = delete;
  InterruptedWritesFail& operator=(const InterruptedWritesFail&) = delete;
};

/// Becomes true when one of these signals comes: for work that is stopped in a way of its own, such
/// as a burn. Any thread may read it.
const std::atomic<bool>& interruption();
/// The exit status of a program that one of these signals has ended, as a shell expects it: 128 and
/// the signal's number. A signal must have come.
int interruptedStatus();

}  // namespace velmor
