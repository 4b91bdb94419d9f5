// The dylib's unwind table, translated for Linux's unwinder: so an exception of the host's can pass
// through the dylib's code and have it clean up.
#pragma once

#include <vector>

#include "tools/mac/macho/mach_o_file.h"

namespace loader {

/// Known to the unwinder while it lives.
class UnwindTables {
 public:
  /// `base` is where address 0 of the file is; what is bound must be bound. Throws
  /// `std::runtime_error` when the file's table cannot be read.
  UnwindTables(const macho::MachOFile& file, char* base);
  ~UnwindTables();
  UnwindTables(const UnwindTables&) = delete;
  UnwindTables& operator=(const UnwindTables&) = delete;

 private:
  std::vector<char> m_frames;
};

}  // namespace loader
