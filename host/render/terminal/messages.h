// The one form of the program's messages on standard error:
//   velmor-render: what happened to "name": why; what to do
#pragma once

#include <string>

namespace velmor::render {

inline constexpr const char* kProgram = "velmor-render";

/// `text`, a clause in lower case without a full stop, behind the program's name.
void printMessage(const std::string& text);

/// The same, marked as a warning.
void printWarning(const std::string& text);

}  // namespace velmor::render
