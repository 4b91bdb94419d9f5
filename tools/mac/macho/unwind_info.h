// The compact unwind table of a Mach-O file: for every function one number that says where it keeps
// its caller's frame.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "tools/mac/macho/mach_o_file.h"

namespace macho {

/// Functions from `start` up to the next entry's.
struct UnwindEntry {
  uint64_t start = 0;
  uint32_t encoding = 0;     ///< 0: nothing unwinds through it
  uint64_t personality = 0;  ///< address of the pointer to the routine, 0 for none
  uint64_t lsda = 0;         ///< address of what that routine reads
};

/// In the order of their addresses; the last one only ends those before it. Throws
/// `std::runtime_error` when the file has no such table or it cannot be read.
std::vector<UnwindEntry> readUnwindInfo(const MachOFile& file);

/// How a function keeps its caller's frame, in the numbers that unwind tables have for the
/// processor's registers.
struct FrameLayout {
  unsigned base_register = 0;
  uint64_t base_offset = 0;  ///< the caller's stack pointer is that register plus this
  /// By register how far below the caller's stack pointer its value lies, in bytes.
  std::map<unsigned, uint64_t> saved;
};

/// Throws `std::runtime_error` for an encoding that leaves the frame to another table.
FrameLayout frameLayout(Processor processor, uint32_t encoding);

}  // namespace macho
