// A folder in memory for the files of a render: thousands of renders a second, and no disk.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

/// While it lives, what the program opens by open(2) are files here, of which there are none at
/// first; flock, ftruncate, pwrite and close know them. Other calls do not, and fail. For one
/// thread, one object at a time, in a program whose calls of these five the linker has wrapped
/// (`--wrap`).
class MemoryFiles {
 public:
  MemoryFiles();
  ~MemoryFiles();
  MemoryFiles(const MemoryFiles&) = delete;
  MemoryFiles& operator=(const MemoryFiles&) = delete;

  /// Whether a file of this name was made.
  static bool exists(const std::string& name);
  /// What is in it; nothing for a file that was never made. Valid until something is written.
  static std::string_view contents(const std::string& name);
  /// Whether somebody has the file open, or locked.
  static bool isHeld(const std::string& name);
  /// Descriptors that are open.
  static int openCount();
  /// Calls so far that changed a file.
  static size_t changes();
};

}  // namespace fuzz
