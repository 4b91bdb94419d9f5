// What a second sheet must never be written over.
#pragma once

#include <filesystem>
#include <vector>

#include "disc/failure.h"

namespace velmor::check {

/// Refuses `path` when something stands there already (unless `force`), or when it is `sheet` or
/// one of `images` by whatever name. Throws `Failure`.
void refuseTarget(const std::filesystem::path& path, const std::filesystem::path& sheet,
                  const std::vector<std::filesystem::path>& images, bool force);

}  // namespace velmor::check
