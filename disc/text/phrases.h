// How all programs write names, lists and counts in their messages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmor::disc {

/// A name in double quotes.
std::string inQuotes(std::string_view name);

/// "one, two and 3 more"; the first five are named.
std::string listed(const std::vector<std::string>& names);

/// A sentence as a part of a message: its first letter small, unless the sentence begins with a
/// word in capitals ("INDEX 01 is missing."), and without its full stop.
std::string asClause(std::string sentence);

/// "1 file", "3 files".
std::string counted(int64_t count, std::string_view noun);

}  // namespace velmor::disc
