#include "host/recording/recording_library.h"

#include "host/recording/drive_service.h"
#include "host/recording/libburn/libburn_recorder.h"

using velmor::recording::DriveService;
using velmor::recording::openLibburn;
using velmor::recording::Options;
using velmor::recording::Service;

extern "C" __attribute__((visibility("default"))) Service* velmorOpenRecording(
    const Options& options) {
  return new DriveService(openLibburn(), options);
}
