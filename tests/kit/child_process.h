// A program that runs beside the test, and what it printed.
#pragma once

#include <sys/types.h>

#include <array>
#include <chrono>
#include <string>
#include <vector>

namespace test_kit {

struct EndedProcess {
  int status = -1;  ///< exit status; 128 and the signal; -1: there is no such program
  std::string out;  ///< standard output
  std::string err;  ///< standard error
  std::string all;  ///< both, as they came
  long peak_kilobytes = 0;
  bool took_too_long = false;  ///< it was killed at its limit
};

struct ProcessOptions {
  std::string folder = {};                    ///< to run in; empty: the test's own
  std::vector<std::string> environment = {};  ///< "NAME=value": whole; empty: the test's own
  void (*in_child)() = nullptr;               ///< called before the program begins
  std::string stop_at = {};                   ///< killed once it has printed this, unless empty
  std::chrono::seconds limit{120};            ///< killed when it runs longer
};

/// A started program with an empty standard input. What still runs is killed at destruction.
class ChildProcess {
 public:
  /// `arguments[0]` is looked up as `findProgram` does.
  explicit ChildProcess(const std::vector<std::string>& arguments,
                        const ProcessOptions& options = {});
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  pid_t pid() const { return m_pid; }
  /// To its end. Once.
  EndedProcess wait();

 private:
  void collect(EndedProcess& ended);

  pid_t m_pid = -1;
  std::array<int, 2> m_pipes{-1, -1};  ///< read ends of standard output and error
  std::string m_stop_at;
  std::chrono::seconds m_limit{};
};

/// Starts the program and waits for its end.
EndedProcess runProcess(const std::vector<std::string>& arguments,
                        const ProcessOptions& options = {});
/// The same for a line of the shell.
EndedProcess runShell(const std::string& line, const ProcessOptions& options = {});

/// The test's own environment with these settings ("NAME=value") in place of its own.
std::vector<std::string> environmentWith(const std::vector<std::string>& settings);

/// Where the program is: a path as it is, a name in PATH or /usr/games. Empty when it is nowhere.
std::string findProgram(const std::string& name);

}  // namespace test_kit
