// How sheets name their images, and what readers make of the names.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace velmor::check {

/// The name by which a sheet in `folder` finds the image.
std::string nameFromFolder(const std::filesystem::path& image, const std::filesystem::path& folder);

/// The one thing that a sheet cannot say: libcdio looks for the sheet's name with ".bin". A
/// sentence where `file`, which the sheet names, is another; none of a TOC, whose FILE it believes.
std::optional<std::string> nameForLibcdio(const std::filesystem::path& sheet,
                                          const std::string& file);

}  // namespace velmor::check
