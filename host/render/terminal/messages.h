// The one form of the program's messages on standard error:
//   velmor-render: what happened to "name": why; what to do
#pragma once

#include <string>
#include <string_view>

namespace velmor::render {

inline constexpr const char* kProgram = "velmor-render";

/// `text`, a clause in lower case without a full stop, behind the program's name; control
/// characters are shown as '?'. Takes no memory.
void printMessage(std::string_view text);

/// The same, marked as a warning.
void printWarning(const std::string& text);

/// Tells of a working folder that could not be removed, for `reason`. Takes no memory.
void printFolderThatStays(const char* path, const char* reason);

}  // namespace velmor::render
