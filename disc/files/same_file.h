// Whether two paths lead to one file.
#pragma once

#include <filesystem>

namespace velmor::disc {

/// By whatever names, and whether it is there yet or not. A path that cannot be followed names no
/// file that another one could name too.
bool sameFile(const std::filesystem::path& a, const std::filesystem::path& b);

}  // namespace velmor::disc
