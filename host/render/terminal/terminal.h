// Questions to the person at the terminal.
#pragma once

#include <optional>
#include <string>

namespace velmor::render {

/// Whether somebody can be asked: standard input is a terminal.
bool somebodyIsThere();

/// Prints `question` on standard error and reads one line of the answer from standard input,
/// without its end. Nothing when there is none, or a signal comes first.
std::optional<std::string> ask(const std::string& question);

/// A question whose answer is no unless it begins with y.
bool askYesOrNo(const std::string& question);

}  // namespace velmor::render
