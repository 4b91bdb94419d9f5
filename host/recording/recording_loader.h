// Brings the recording library into the program, once somebody wants to burn.
#pragma once

#include <string>

#include "disc/failure.h"
#include "host/recording/recording_library.h"

namespace velmor::recording {

/// Loads the library `path`, named with its folder, and opens its service; the owner ends it with
/// `Service::close`. Never null; throws `Failure` that says what is missing. The library stays
/// loaded until the process ends.
Service* loadRecording(const std::string& path, const Options& options);

}  // namespace velmor::recording
