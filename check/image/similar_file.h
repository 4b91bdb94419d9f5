// Which file somebody may have meant.
#pragma once

#include <filesystem>
#include <optional>

namespace velmor::check {

/// The name of a file in the sheet's folder that is `missing` but for the case of letters, or but
/// for the folders before it, those of another system too; none when there is no such file.
/// `folder`: the sheet's.
std::optional<std::filesystem::path> similarFile(const std::filesystem::path& missing,
                                                 const std::filesystem::path& folder);

}  // namespace velmor::check
