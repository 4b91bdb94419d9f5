// Where the module keeps what was last chosen in its dialogs.
#pragma once

#include <string>

namespace velmor::render {

/// The ini file that this host names to the module, in the user's configuration folder. The file
/// and its folder need not exist.
std::string settingsFilePath();

}  // namespace velmor::render
