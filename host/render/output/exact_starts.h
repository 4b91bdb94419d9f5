// Where the plan says that tracks start, for those who read the finished sheet.
#pragma once

#include "check/portable/make_portable.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

/// The first frame of each track, and the pauses that the inputs' sheets give.
check::ExactStarts startsOf(const TrackPlan& plan);

}  // namespace velmor::render
