// Checking a set of files for a plant, which several programs do.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "disc/failure.h"
#include "disc/terminal/interrupt.h"

namespace velmor::programs {

struct SetCheck {
  std::string program;         ///< whose name stands before messages
  std::filesystem::path set;   ///< the folder
  std::filesystem::path page;  ///< to write a page to; empty: none is wanted
  std::string_view before;     ///< printed in front of the report, where there is one
  bool json = false, strict = false, force = false;
};

/// Prints what `velmor-ddp check` prints, with progress bars. Returns the exit status: 0, or 1 for
/// errors (with `strict` also for warnings) and for a page that could not be written. Throws
/// `Failure` when there is no set, no place for the page, or nobody takes the report; `Interrupted`
/// when a signal was noted.
int checkSet(const SetCheck& wanted);

/// Is there the identifier of a set in the folder?
bool looksLikeSet(const std::filesystem::path& folder);

}  // namespace velmor::programs
