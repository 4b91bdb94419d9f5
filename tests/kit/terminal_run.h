// A program at a terminal, and the person who types there.
#pragma once

#include <string>
#include <vector>

namespace test_kit {

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
  bool waitFor(const std::string& text);
  void type(const std::string& text) const;
  /// Waits for the end and returns the exit status, -1 when a signal ended it or it is
  /// silent for twenty seconds.
  int finish();
  /// All that was printed.
  const std::string& output() const { return m_output; }

 private:
  bool readSome();

  int m_terminal = -1;
  int m_process = -1;
  bool m_closed = false;  ///< the program has let go of the terminal
  size_t m_looked_at = 0;
  std::string m_output;
};

}  // namespace test_kit
