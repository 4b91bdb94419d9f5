// velmor-render inside a child process of the test, where its calls can be made to fail.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace render_test {

struct EndedProgram {
  int status = -1;  ///< exit status; 128 and the signal that ended it
  std::string out;  ///< standard output
  std::string err;  ///< standard error
};

/// Calls the program's main function in a child that has this working folder, no input, and HOME
/// there. `surroundings` is called in the child with what runs the program; what it sets up around
/// that lasts as long. A child that is not done after two minutes is ended by SIGALRM.
EndedProgram runForked(const std::vector<std::string>& arguments, const std::string& folder,
                       const std::function<void(const std::function<void()>&)>& surroundings);

}  // namespace render_test
