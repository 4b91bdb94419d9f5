#include "host/render/module/image_room.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cassert>

namespace velmor::render {

namespace {

/// The module cannot write while room is found: so little at a time that it hardly waits.
constexpr int64_t kStep = int64_t{128} * 1024;

}  // namespace

ImageRoom::ImageRoom(const std::string& path, int64_t bytes)
    : m_descriptor(open(path.c_str(), O_WRONLY | O_CLOEXEC)), m_bytes(bytes) {
  assert(bytes >= 0);
}

ImageRoom::~ImageRoom() {
  if (m_descriptor >= 0) close(m_descriptor);
}

bool ImageRoom::makeBehind(int64_t written) {
  assert(written >= 0);
  m_reached = std::max(m_reached, written + kStep);
  const int64_t step = std::min(kStep, m_bytes - m_reached);
  if (m_descriptor < 0 || step <= 0) return false;
  if (fallocate(m_descriptor, FALLOC_FL_KEEP_SIZE, m_reached, step) != 0) {
    close(m_descriptor);
    m_descriptor = -1;
    return false;
  }
  m_reached += step;
  return true;
}

}  // namespace velmor::render
