// A burn that must not begin.
#pragma once

#include <stdexcept>

namespace velmor::recording {

/// Why, and what to do, as sentences for the person. Nothing has been written when it is thrown.
class Refusal : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace velmor::recording
