// What the numbers on the command line have to be, in words that say what to give instead.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>

namespace velmor::render {

/// A whole number from `least` to `most`. `what` names it ("number of milliseconds"), `instead`
/// ends the message: "give 2000 for two seconds".
CLI::Validator wholeNumber(int64_t least, int64_t most, const std::string& what,
                           const std::string& instead);

/// A number above 0 in decimal notation; otherwise as above.
CLI::Validator positiveNumber(const std::string& what, const std::string& instead);

}  // namespace velmor::render
