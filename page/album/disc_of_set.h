// A checked set of files for a plant as a page shows it.
#pragma once

#include <cstdint>
#include <functional>

#include "ddp/check/checked_set.h"
#include "page/album/page_disc.h"

namespace velmor::page {

/// `progress` is told of the bytes done and of all while the audio is looked through for clipped
/// runs. It may throw, which ends the work.
PageDisc discOfSet(const ddp::CheckedSet& set,
                   const std::function<void(int64_t done, int64_t all)>& progress);

}  // namespace velmor::page
