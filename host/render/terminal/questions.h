// Questions to the user at the terminal.
#pragma once

#include <optional>
#include <string>

namespace velmor::render {

/// Whether there is a user to ask: standard input is a terminal.
bool canAskQuestions();

/// Prints `question` on standard error and reads one line of the answer from standard input,
/// without its end. Nothing when standard input has ended, or when a signal comes before the line
/// is complete.
std::optional<std::string> ask(const std::string& question);

/// A question whose answer is no unless it begins with y.
bool askYesOrNo(const std::string& question);

}  // namespace velmor::render
