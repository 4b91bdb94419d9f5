// The recording service of the process: there while somebody burns or lists drives, absent
// otherwise.
#pragma once

#include "abi/disc_recording.h"
#include "disc/failure.h"
#include "host/recording/recording_library.h"

namespace velmor::render {

/// Brings the recording library in and has the module find its service, for as long as the object
/// lives. One at a time.
class RecordingRoom {
 public:
  /// Throws `Failure` when the library or what it stands on is missing.
  explicit RecordingRoom(const recording::Options& options);
  ~RecordingRoom();
  RecordingRoom(const RecordingRoom&) = delete;
  RecordingRoom& operator=(const RecordingRoom&) = delete;

  recording::Service& service() const { return *m_service; }

 private:
  recording::Service* m_service = nullptr;
};

}  // namespace velmor::render

/// Where the module looks for recorders; null when nobody burns.
extern "C" DiscRecordingService* velmorGetDiscRecording();
