// Findings in the words of somebody who made the music, not the disc.
#pragma once

#include <string_view>

namespace velmor::page {

/// A sentence for a rule by its id; empty for a rule that is not known here.
std::string_view clientWords(std::string_view rule);

}  // namespace velmor::page
