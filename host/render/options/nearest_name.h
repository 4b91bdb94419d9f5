// What a misspelt word was probably meant to be.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmor::render {

/// How many letters must be left out, put in, exchanged for others or swapped with their neighbour
/// to make one word of the other (the optimal string alignment distance).
size_t spellingDistance(std::string_view one, std::string_view other);

/// The one of `names` that is nearest to `word`, the first of equal ones; nothing when the nearest
/// differs in more than a third of its letters.
std::optional<std::string> nearestName(std::string_view word,
                                       const std::vector<std::string>& names);

}  // namespace velmor::render
