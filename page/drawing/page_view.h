// What every part of a page is made from.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "page/measure/measured_disc.h"

namespace velmor::page {

struct PageView {
  const PageDisc& disc;
  const MeasuredDisc& measured;
  /// The sector of each finding; nothing for what has no place on the disc.
  const std::vector<std::optional<int64_t>>& places;
  const std::vector<check::Reader>& readers;  ///< those that matter; empty: all
  bool strict = false;                        ///< warnings count as errors
};

}  // namespace velmor::page
