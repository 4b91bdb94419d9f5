// A disc for people: its state, table of contents, codes and texts.
#pragma once

#include <ostream>

#include "tools/emulated_drive/directory/drive_directory.h"

namespace velmor::emulated_drive {

/// The drive, what is wrong with it on purpose, and the disc in its tray.
void report(const DriveDirectory& directory, std::ostream& out);

}  // namespace velmor::emulated_drive
