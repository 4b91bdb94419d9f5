// Small text files written whole or not at all.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "disc/failure.h"

namespace velmor::disc {

struct TextFile {
  std::filesystem::path path;
  std::string text;
};

/// Writes each text beside its path, and moves them into place once all are on the disk: a failure
/// leaves what was there. Without `force` a file that appeared meanwhile is not replaced. Throws
/// `Failure`.
void writeWhole(const std::vector<TextFile>& files, bool force);
void writeWhole(const std::filesystem::path& path, const std::string& text, bool force);

}  // namespace velmor::disc
