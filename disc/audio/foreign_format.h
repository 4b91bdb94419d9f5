// Kinds of files that hold audio but that the decoder does not read.
#pragma once

#include <string>

#include "disc/audio/file_bytes.h"

namespace velmor::disc {

/// What the file is and the command that makes a file of it that can be read, as the rest of a
/// message about `path`; empty when it is of no kind that is known here.
std::string foreignFormat(const FileBytes& file, const std::string& path);

}  // namespace velmor::disc
