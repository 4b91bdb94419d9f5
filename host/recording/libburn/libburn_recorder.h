// The recorders that libburn finds.
#pragma once

#include <memory>
#include <string>

#include "host/recording/burn/recorder.h"

namespace velmor::recording {

/// Brings libburn up; it goes down with the bus. One bus at a time in a process. Null on failure,
/// and `why` has a sentence.
std::unique_ptr<RecorderBus> openLibburn(std::string& why);

}  // namespace velmor::recording
