// What ends a run before its disc image is done.
#pragma once

#include <stdexcept>

namespace velmor::render {

/// Wrong usage: exit status 2. The text is one sentence.
class UsageError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Anything else that stops the work: exit status 1. The text is one sentence that says what, where
/// and what to do.
class RenderError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The person has interrupted the run.
class Interrupted : public std::runtime_error {
 public:
  explicit Interrupted(int signal) : std::runtime_error("interrupted"), m_signal(signal) {}
  /// What a shell expects: 128 and the signal's number.
  int exitStatus() const { return 128 + m_signal; }

 private:
  int m_signal;
};

}  // namespace velmor::render
