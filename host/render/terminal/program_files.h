// Where the files are that come with the program and are loaded while it runs.
#pragma once

#include <string>

namespace velmor::render {

/// The path of the library `name`: beside the program, as a build has it, or in the library folder
/// of the install tree that the program lies in. Where neither has it, the path beside the program,
/// for a message.
std::string libraryOfProgram(const std::string& name);

}  // namespace velmor::render
