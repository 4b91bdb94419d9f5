// The disc recording service of the process, for as long as a burn or a list of drives needs it.
#pragma once

#include "abi/disc_recording.h"
#include "disc/failure.h"
#include "host/recording/interface/recording_service.h"

namespace velmor::render {

/// Loads the recording library and has the module find its service, for as long as the object
/// lives. One at a time, on the thread that calls the module.
class ScopedRecordingService {
 public:
  /// Throws `Failure` when the library or what it stands on is missing.
  explicit ScopedRecordingService(const recording::RecordingOptions& options);
  ~ScopedRecordingService();
  ScopedRecordingService(const ScopedRecordingService&) = delete;
  ScopedRecordingService& operator=(const ScopedRecordingService&) = delete;

  recording::Service& service() const { return *m_service; }

 private:
  recording::Service* m_service = nullptr;
};

}  // namespace velmor::render

/// Where the module looks for recorders; null while there is no `ScopedRecordingService`.
extern "C" DiscRecordingService* velmorGetDiscRecording();
