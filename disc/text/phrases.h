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

/// "1 file", "3 files".
std::string counted(int64_t count, std::string_view noun);

}  // namespace velmor::disc
