// What surrounds the work of every program: its command line, its messages, and how it ends.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string_view>

#include "disc/failure.h"

namespace velmor::programs {

/// Exit status: what was read is not good, or something was not written.
inline constexpr int kFailed = 1;
/// Exit status: wrong usage, or what was to be read or written cannot be.
inline constexpr int kNotDone = 2;

/// Reads the command line into `app`, which bears the program's name, and does `work`, whose result
/// is the exit status. Signals are watched for meanwhile (disc/terminal/interrupt.h). Every
/// exception becomes a message; `Interrupted` says that nothing was written.
int runProgram(CLI::App& app, int argc, char** argv, const std::function<int()>& work);

/// One line on standard error behind the program's name. What a terminal would obey or could not
/// show is '?': names of files come from anywhere.
void printMessage(std::string_view program, std::string_view text);

/// Scripts go by the exit status: on a full disk a report must not look complete. Throws `Failure`.
void flushReport();

}  // namespace velmor::programs
