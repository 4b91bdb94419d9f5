// Where on the disc a finding lies.
#pragma once

#include <optional>
#include <vector>

#include "page/measure/measured_disc.h"

namespace velmor::page {

/// The sector of each of the disc's findings; nothing for what concerns the disc as a whole, or a
/// track that has no place.
std::vector<std::optional<int64_t>> findingPlaces(const PageDisc& disc,
                                                  const MeasuredDisc& measured);

}  // namespace velmor::page
