#include "host/render/burn/scoped_recording_service.h"

#include <cassert>
#include <string>

#include "host/recording/loader/load_recording.h"
#include "host/render/terminal/program_files.h"

namespace velmor::render {

namespace {

recording::Service* g_service = nullptr;

}  // namespace

ScopedRecordingService::ScopedRecordingService(const recording::RecordingOptions& options) {
  assert(!g_service);
  m_service = recording::loadRecording(libraryOfProgram(recording::kRecordingLibrary), options);
  g_service = m_service;
}

ScopedRecordingService::~ScopedRecordingService() {
  g_service = nullptr;
  m_service->close();
}

}  // namespace velmor::render

/// The module asks for the service whenever it lists the recorders and whenever it burns, and
/// expects it to know the drives of that moment: so the drives are looked for anew each time.
extern "C" __attribute__((visibility("default"))) DiscRecordingService* velmorGetDiscRecording() {
  if (velmor::render::g_service) velmor::render::g_service->refresh();
  return velmor::render::g_service;
}
