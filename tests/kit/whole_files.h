// Files read and written whole.
#pragma once

#include <filesystem>
#include <string>

namespace test_kit {

/// Throws `std::runtime_error` when the file cannot be read.
std::string readFile(const std::filesystem::path& path);
/// As `readFile`, but empty for a file that cannot be read: for output that may be missing.
std::string contentOf(const std::filesystem::path& path);
/// Throws `std::runtime_error` when the file cannot be written.
void writeFile(const std::filesystem::path& path, const std::string& bytes);

}  // namespace test_kit
