// Writing a small text file whole or not at all.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "disc/failure.h"

namespace velmor::check {

/// Refuses `path` when something stands there already (unless `force`), or when it is `sheet` or
/// one of `images` by whatever name. Throws `Failure`.
void refuseTarget(const std::filesystem::path& path, const std::filesystem::path& sheet,
                  const std::vector<std::filesystem::path>& images, bool force);
struct TextFile {
  std::filesystem::path path;
  std::string text;
};

/// Writes each text beside its path, and moves them into place once all are on the disk: a failure
/// leaves what was there. Without `force` a file that appeared meanwhile is not replaced. Throws
/// `Failure`.
void writeWhole(const std::vector<TextFile>& files, bool force);
void writeWhole(const std::filesystem::path& path, const std::string& text, bool force);

}  // namespace velmor::check
