// The recorders that libburn finds.
#pragma once

#include <memory>

#include "host/recording/burn/recorder.h"

namespace velmor::recording {

/// Brings libburn up; it goes down with the bus. One bus at a time in a process. Never null; throws
/// `Failure` when libburn cannot be used.
std::unique_ptr<RecorderBus> openLibburn();

}  // namespace velmor::recording
