// Ctrl-C and its kin: noted when they come, acted on where the work can stop cleanly.
#pragma once

#include <atomic>
#include <stdexcept>

#include "disc/failure.h"

namespace velmor::render {

/// The person has interrupted the run. Not a `Failure`: nothing went wrong.
class Interrupted : public std::runtime_error {
 public:
  explicit Interrupted(int signal) : std::runtime_error("interrupted"), m_signal(signal) {}
  /// What a shell expects: 128 and the signal's number.
  int exitStatus() const { return 128 + m_signal; }

 private:
  int m_signal;
};

/// Notes SIGINT, SIGTERM and SIGHUP from now on instead of dying of them.
void watchForInterrupts();

/// Throws `Interrupted` when one of them has come. Any thread.
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

/// Becomes true when one of them comes, for those who stop in their own way.
const std::atomic<bool>& interruption();
/// 128 and the signal's number, as a shell expects it of who was interrupted.
int interruptedStatus();

}  // namespace velmor::render
