#include "host/render/burn/recording_room.h"

#include <string>

#include "disc/failure.h"
#include "host/recording/recording_loader.h"
#include "host/render/terminal/program_files.h"

namespace velmor::render {

namespace {

recording::Service* g_service = nullptr;

}  // namespace

RecordingRoom::RecordingRoom(const recording::Options& options) {
  m_service = recording::loadRecording(libraryOfProgram(recording::kRecordingLibrary), options);
  g_service = m_service;
}

RecordingRoom::~RecordingRoom() {
  g_service = nullptr;
  m_service->close();
}

}  // namespace velmor::render

/// The module asks whenever it lists the recorders and whenever it burns: each time the drives are
/// looked for anew.
extern "C" __attribute__((visibility("default"))) DiscRecordingService* velmorGetDiscRecording() {
  if (velmor::render::g_service) velmor::render::g_service->refresh();
  return velmor::render::g_service;
}
