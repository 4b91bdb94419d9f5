#include <new>

#include "disc/failure.h"
#include "host/recording/interface/recording_service.h"
#include "host/recording/libburn/libburn_recorder.h"
#include "host/recording/service/drive_service.h"

using velmor::Failure;
using velmor::recording::DriveService;
using velmor::recording::openLibburn;
using velmor::recording::RecordingOptions;
using velmor::recording::Service;

extern "C" __attribute__((visibility("default"))) Service* velmorOpenRecording(
    const RecordingOptions& options, std::string& why) {
  try {
    return new DriveService(openLibburn(), options);
  } catch (const Failure& failure) {
    why = failure.what();
  } catch (const std::bad_alloc&) {
    why = "no memory left";  // short enough to need none
  }
  return nullptr;
}
