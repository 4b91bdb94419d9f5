// A program at a terminal, and the person who types there.
#pragma once

#include <string>
#include <vector>

namespace burn_test {

/// Runs a program on a terminal of its own. One at a time per object.
class TerminalRun {
 public:
  explicit TerminalRun(const std::vector<std::string>& command);
  /// Ends what is still running.
  ~TerminalRun();
  TerminalRun(const TerminalRun&) = delete;
  TerminalRun& operator=(const TerminalRun&) = delete;

  /// Waits until the program has printed `text` since the last call; false when it ends or is
  /// silent for twenty seconds.
  bool WaitFor(const std::string& text);
  void Type(const std::string& text) const;
  /// Waits for the end and returns the exit status, -1 when a signal ended it or it is
  /// silent for twenty seconds.
  int Finish();
  /// All that was printed.
  const std::string& output() const { return output_; }

 private:
  bool ReadSome();

  int terminal_ = -1;
  int process_ = -1;
  bool closed_ = false;  ///< the program has let go of the terminal
  size_t looked_at_ = 0;
  std::string output_;
};

}  // namespace burn_test
