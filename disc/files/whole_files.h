// Small text files written whole or not at all.
#pragma once

#include <filesystem>
#include <functional>
#include <list>
#include <string>
#include <string_view>
#include <vector>

#include "disc/failure.h"
#include "disc/files/draft.h"

namespace velmor::disc {

using WriteBytes = std::function<void(std::string_view)>;

struct TextFile {
  std::filesystem::path path;
  std::string text;
  /// Writes what does not fit into memory, behind the text; empty: nothing.
  std::function<void(const WriteBytes&)> more = {};
};

/// Writes each text beside its path, and moves them into place once all are on the disk: a failure
/// leaves what was there. Without `force` a file that appeared meanwhile is not replaced. Throws
/// `Failure`.
void writeWhole(const std::vector<TextFile>& files, bool force);
void writeWhole(const std::filesystem::path& path, const std::string& text, bool force);

/// Moves drafts that are on the disk into their places, all or none. Without `force` a file that is
/// there is not replaced. Throws `std::filesystem::filesystem_error`.
void placeAll(const std::list<Draft>& drafts, bool force);
/// What such an error means to the user.
Failure notWritten(const std::filesystem::filesystem_error& error);

}  // namespace velmor::disc
