// Texts that a cue sheet can hold.
#pragma once

#include <string>
#include <vector>

namespace velmor::render {

/// `text` in UTF-8 (other bytes are read as Windows-1252), with line breaks and other control
/// characters made blanks and double quotes made apostrophes, since either would end a field early,
/// and cut to what a line holds. Adds a warning for each text that changes.
std::string fitForSheet(const std::string& text, std::vector<std::string>& warnings);

}  // namespace velmor::render
