// A file whose room can be measured, whatever file system the tests run on.
#pragma once

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <stdexcept>
#include <string>

namespace velmor::render::test {

/// In memory, empty at first; it is gone with the object.
class MemoryFile {
 public:
  MemoryFile() : m_descriptor(memfd_create("image", MFD_CLOEXEC)) {
    if (m_descriptor < 0) throw std::runtime_error("no file in memory");
  }
  ~MemoryFile() { close(m_descriptor); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  /// Opens it once more, in this process.
  std::string path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }
  int descriptor() const { return m_descriptor; }
  int64_t bytes() const { return status().st_size; }
  /// What it takes of the memory, in bytes.
  int64_t room() const { return int64_t{status().st_blocks} * 512; }

 private:
  struct stat status() const {
    struct stat status {};
    if (fstat(m_descriptor, &status) != 0)
      throw std::runtime_error("no status of a file in memory");
    return status;
  }

  const int m_descriptor;
};

}  // namespace velmor::render::test
