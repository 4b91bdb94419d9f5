// The description of a disc as text, one fact a line.
#pragma once

#include <filesystem>
#include <string>

#include "tools/emulated_drive/disc/emulated_disc.h"

namespace velmor::emulated_drive {

std::string discText(const EmulatedDisc& disc);
/// Throws `DirectoryError`.
EmulatedDisc readDisc(const std::filesystem::path& file);

}  // namespace velmor::emulated_drive
