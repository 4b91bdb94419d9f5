// What a second sheet could not mend.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace velmor::check {

/// What some reader refuses or damages in the sheet `text`, which stands or will stand at `target`
/// beside its images: a sentence each.
std::vector<std::string> leftForReaders(const std::string& text,
                                        const std::filesystem::path& target);

}  // namespace velmor::check
