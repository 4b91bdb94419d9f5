#include "host/render/delivery.h"

#include <cstdio>
#include <exception>
#include <filesystem>

#include "host/render/disc_time.h"

namespace velmor::render {

Delivery::~Delivery() {
  if (!m_whole || m_delivered) return;
  try {
    m_output.commit();
  } catch (const std::exception& error) {
    fprintf(stderr, "%s\n", error.what());
  }
}

void Delivery::beforeBurn() {
  look(static_cast<double>(m_plan.image_frames) / kFramesPerSecond);
  m_delivered = m_output.commitAndKeepWorkingNames();
}

void Delivery::afterRender(const RenderOutcome& outcome, bool image_deleted) {
  if (!m_whole) look(outcome.image_seconds);
  const bool to_be_moved = !m_delivered && !image_deleted;
  m_delivered = true;  // or said why not
  if (to_be_moved) m_output.commit();
  // A burn that deletes the pair knows nothing of the third file.
  if (image_deleted && !m_output.portableSheet().empty()) {
    std::error_code ignored;
    std::filesystem::remove(m_output.portableSheet(), ignored);
  }
}

void Delivery::look(double image_seconds) {
  namespace fs = std::filesystem;
  checkFinishedFiles(m_output.workingSheet(), m_output.workingImage(), image_seconds,
                     static_cast<int>(m_plan.tracks.size()));
  m_files = {readCueText(m_output.workingSheet()), fs::file_size(m_output.workingSheet()),
             fs::file_size(m_output.workingImage())};
  m_on_whole();
  m_whole = true;
}

}  // namespace velmor::render
