#include "tools/recorder/directory/file_surface.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

namespace velmor::recorder {

namespace {
off_t offsetOf(int32_t lba) {
  return static_cast<off_t>(lba + kFirstPregap) * kSectorBytes;
}
}  // namespace

FileSurface::~FileSurface() {
  if (descriptor_ >= 0) {
    ::close(descriptor_);
  }
}

bool FileSurface::open(int flags) {
  if (descriptor_ < 0) {
    descriptor_ = ::open(file_.c_str(), flags | O_CLOEXEC, 0666);
  }
  return descriptor_ >= 0;
}

bool FileSurface::write(int32_t lba, ByteView sectors) {
  if (!open(O_RDWR | O_CREAT)) {
    return false;
  }
  off_t at = offsetOf(lba);
  while (!sectors.empty()) {
    const ssize_t done = ::pwrite(descriptor_, sectors.data(), sectors.size(), at);
    if (done <= 0) {
      return false;
    }
    at += done;
    sectors = sectors.subspan(static_cast<std::size_t>(done));
  }
  return true;
}

bool FileSurface::read(int32_t lba, std::span<uint8_t> sectors) {
  if (!open(O_RDWR | O_CREAT)) {
    return false;
  }
  off_t at = offsetOf(lba);
  while (!sectors.empty()) {
    const ssize_t done = ::pread(descriptor_, sectors.data(), sectors.size(), at);
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
  return open(O_RDWR | O_CREAT) && ::ftruncate(descriptor_, 0) == 0;
}

}  // namespace velmor::recorder
