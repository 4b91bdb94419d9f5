// Runs a reader of sheets, and what it printed.
#pragma once

#include <string>
#include <vector>

#include "tests/kit/child_process.h"

namespace velmor::check::test {

using test_kit::findProgram;
using ProcessResult = test_kit::EndedProcess;

/// Runs a program in `folder`, which is its home too, without display or sound. Ends it after 20 s,
/// or once `stop_at` (when not empty) was printed.
ProcessResult runProcess(const std::vector<std::string>& arguments, const std::string& folder,
                         const std::string& stop_at = "");

}  // namespace velmor::check::test
