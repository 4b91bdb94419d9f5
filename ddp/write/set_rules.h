// What a set cannot hold of a sheet that is sound otherwise.
#pragma once

#include "check/image/opened_disc.h"
#include "check/report/findings.h"

namespace velmor::ddp {

/// Tracks that are no audio or not numbered from 1, images that cannot be joined, flags that
/// exclude each other.
void checkForSet(const check::Disc& disc, check::Findings& findings);

}  // namespace velmor::ddp
