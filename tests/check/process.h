// Runs a program, and what it printed.
#pragma once

#include <string>
#include <vector>

namespace velmor::check::test {

struct ProcessResult {
  int status = -1;  ///< exit status; 128 + signal; -1: could not be started
  std::string out;  ///< standard output
  std::string all;  ///< standard output and error, as they came
};

/// `arguments[0]` is looked up in PATH (and /usr/games). Runs in `folder`, with an empty standard
/// input and no display or sound. Ends the program after 20 s, or once `stopAt` (when not empty)
/// was printed.
ProcessResult runProcess(const std::vector<std::string>& arguments, const std::string& folder,
                         const std::string& stop_at = "");
/// Where the program is, or empty.
std::string findProgram(const std::string& name);

}  // namespace velmor::check::test
