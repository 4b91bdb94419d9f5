// Lines "key = value"; empty lines and lines that begin with # say nothing.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velmor::emulated_drive {

struct KeyValue {
  std::string key, value;
  std::string where;  ///< where it was given, for a message: "line 3 of ..."
};

/// Throws `DirectoryError` when the file cannot be read or a line has no "=".
std::vector<KeyValue> readKeyValues(const std::filesystem::path& file);
/// Replaces the file at one stroke: readers see the old or the new text. Throws `DirectoryError`.
void replaceFile(const std::filesystem::path& file, const std::string& text);
/// A file that is not there is no fault. Throws `DirectoryError`.
void removeFile(const std::filesystem::path& file);

/// A whole number; throws `DirectoryError` that names the file and the line.
int32_t numberOf(const KeyValue& item);
/// "yes" or "no"; throws `DirectoryError`.
bool switchOf(const KeyValue& item);
/// Throws `DirectoryError` that names the item, its place and what was expected there.
[[noreturn]] void refuse(const KeyValue& item, const std::string& expected);

}  // namespace velmor::emulated_drive
