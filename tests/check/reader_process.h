// Runs a reader of sheets, and what it printed.
#pragma once

#include <string>
#include <vector>

#include "tests/kit/child_process.h"

namespace velmor::check::test {

using test_kit::findProgram;
using ProcessResult = test_kit::EndedProcess;

/// Runs a program in `folder`, which is its home too, without display or sound. Ends it
/// once `stop_at` (when not empty) was printed, or after 20 s of processor time. Throws
/// `std::runtime_error` after three minutes: on a busy machine mpv alone was seen to take 40 s, and
/// to be late is not to refuse a sheet.
ProcessResult runProcess(const std::vector<std::string>& arguments, const std::string& folder,
                         const std::string& stop_at = "");

}  // namespace velmor::check::test
