// The description of a disc as text, one fact a line.
#pragma once

#include <filesystem>
#include <string>

#include "tools/emulated_drive/disc/disc.h"

namespace velmor::recorder {

std::string discText(const Disc& disc);
/// Throws `DirectoryError`.
Disc readDisc(const std::filesystem::path& file);

}  // namespace velmor::recorder
