#include "host/render/output/delivery.h"

#include <exception>
#include <filesystem>

#include "host/render/terminal/messages.h"

namespace velmor::render {

Delivery::~Delivery() {
  if (!m_whole || m_delivered) return;
  try {
    m_output.commit();
  } catch (const std::exception& error) {
    printMessage(error.what());
  }
}

void Delivery::beforeBurn() {
  look(m_plan.counted_frames);
  m_delivered = m_output.commitAndKeepWorkingNames();
  m_in_place(m_output.workingSheet());
}

void Delivery::afterRender(const RenderOutcome& outcome, bool image_deleted) {
  const bool was_burned = m_whole;
  if (!m_whole) look(outcome.counted_frames);
  const bool to_be_moved = !m_delivered && !image_deleted;
  m_delivered = true;  // also when `commit` throws: the destructor is not to try again
  if (to_be_moved) m_output.commit();
  if (!was_burned) m_in_place(m_output.sheet());
  // The module deletes sheet and image after a burn. It does not know the portable sheet, which is
  // useless without its image.
  if (image_deleted && !m_output.portableSheet().empty()) {
    std::error_code ignored;
    std::filesystem::remove(m_output.portableSheet(), ignored);
  }
}

void Delivery::look(int64_t counted_frames) {
  m_files = readFinishedFiles(m_output.workingSheet(), m_output.workingImage(), m_project, m_plan,
                              counted_frames);
  m_on_whole();
  m_whole = true;
}

}  // namespace velmor::render
