// What the look at a disc before its render has found.
#pragma once

#include <string>
#include <vector>

namespace velmor::render {

/// Clauses for messages: lower case, without a full stop.
struct PreflightFindings {
  std::vector<std::string> errors;  ///< one is enough for the render to be refused
  std::vector<std::string> warnings;
};

}  // namespace velmor::render
