// Brings the recording library into the program when a burn or a list of drives needs it.
#pragma once

#include <string>

#include "disc/failure.h"
#include "host/recording/interface/recording_service.h"

namespace velmor::recording {

/// Loads the library `path`, named with its folder, and opens its service; the caller ends it with
/// `Service::close`. Never null; throws `Failure` when the library or what it stands on is missing.
/// The library stays loaded until the process ends. One service at a time, all on one thread.
Service* loadRecording(const std::string& path, const RecordingOptions& options);

}  // namespace velmor::recording
