#include "tools/emulated_drive/directory/file_surface.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cassert>
#include <cerrno>

namespace velmor::emulated_drive {

namespace {
off_t offsetOf(int32_t lba) {
  assert(lba >= -kFirstPregap);
  return static_cast<off_t>(lba + kFirstPregap) * kSectorBytes;
}
}  // namespace

FileSurface::~FileSurface() {
  forget();
}

void FileSurface::forget() {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
    m_descriptor = -1;
  }
}

bool FileSurface::open(int flags) {
  if (m_descriptor < 0) {
    m_descriptor = ::open(m_file.c_str(), O_RDWR | O_CLOEXEC | flags, 0666);
  }
  return m_descriptor >= 0;
}

bool FileSurface::write(int32_t lba, ByteView sectors) {
  assert(sectors.size() % kSectorBytes == 0);
  if (!open(O_CREAT)) {
    return false;
  }
  off_t at = offsetOf(lba);
  while (!sectors.empty()) {
    const ssize_t done = ::pwrite(m_descriptor, sectors.data(), sectors.size(), at);
    if (done <= 0) {
      return false;
    }
    at += done;
    sectors = sectors.subspan(static_cast<std::size_t>(done));
  }
  return true;
}

bool FileSurface::read(int32_t lba, std::span<uint8_t> sectors) {
  assert(sectors.size() % kSectorBytes == 0);
  if (!open(0)) {
    std::fill(sectors.begin(), sectors.end(), uint8_t{0});
    return errno == ENOENT;  // nothing was ever written
  }
  off_t at = offsetOf(lba);
  while (!sectors.empty()) {
    const ssize_t done = ::pread(m_descriptor, sectors.data(), sectors.size(), at);
    if (done < 0) {
      return false;
    }
    if (done == 0) {  // never written
      std::fill(sectors.begin(), sectors.end(), uint8_t{0});
      return true;
    }
    at += done;
    sectors = sectors.subspan(static_cast<std::size_t>(done));
  }
  return true;
}

bool FileSurface::erase() {
  return open(O_CREAT) && ::ftruncate(m_descriptor, 0) == 0;
}

}  // namespace velmor::emulated_drive
