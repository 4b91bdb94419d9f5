// What ends a piece of work in any of the programs.
#pragma once

#include <stdexcept>

namespace velmor {

/// Why the work could not be done: a sentence that says what, where and what to do. Nothing is left
/// half-written when it is thrown. A program prints it behind its name and ends with status 1.
class Failure : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace velmor
