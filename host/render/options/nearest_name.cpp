#include "host/render/options/nearest_name.h"

#include <algorithm>

namespace velmor::render {

size_t spellingDistance(std::string_view one, std::string_view other) {
  // Distances between the beginnings of the two, for the last three lengths of `one`.
  std::vector<size_t> two_before;
  std::vector<size_t> before(other.size() + 1);
  for (size_t j = 0; j <= other.size(); ++j) before[j] = j;
  for (size_t i = 1; i <= one.size(); ++i) {
    std::vector<size_t> row(other.size() + 1);
    row[0] = i;
    for (size_t j = 1; j <= other.size(); ++j) {
      const size_t exchanged = before[j - 1] + (one[i - 1] == other[j - 1] ? 0 : 1);
      row[j] = std::min({before[j] + 1, row[j - 1] + 1, exchanged});
      const bool swapped =
          i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1];
      if (swapped) row[j] = std::min(row[j], two_before[j - 2] + 1);
    }
    two_before = std::move(before);
    before = std::move(row);
  }
  return before[other.size()];
}

std::optional<std::string> nearestName(std::string_view word,
                                       const std::vector<std::string>& names) {
  std::optional<std::string> nearest;
  size_t least = 0;
  for (const std::string& name : names) {
    const size_t distance = spellingDistance(word, name);
    if (3 * distance > name.size() || (nearest && distance >= least)) continue;
    nearest = name;
    least = distance;
  }
  return nearest;
}

}  // namespace velmor::render
