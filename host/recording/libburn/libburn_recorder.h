// The recorders that libburn finds.
#pragma once

#include <memory>

#include "disc/failure.h"
#include "host/recording/burn/recorder.h"

namespace velmor::recording {

/// Brings libburn up; it goes down with the bus. One bus at a time in a process. Never null; throws
/// `Failure` when libburn is too old or does not start.
std::unique_ptr<RecorderBus> openLibburn();

}  // namespace velmor::recording
