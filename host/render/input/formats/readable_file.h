// A file that the user has named, opened for reading, with a message for everything that may be
// wrong with the name.
#pragma once

#include <cstdint>
#include <string>

#include "disc/failure.h"
#include "host/render/input/formats/file_bytes.h"

namespace velmor::render {

/// An open regular file; closes it.
class ReadableFile {
 public:
  /// Throws `Failure` when `path` is missing, forbidden, a folder, a device or a pipe.
  explicit ReadableFile(const std::string& path);
  ~ReadableFile();
  ReadableFile(const ReadableFile&) = delete;
  ReadableFile& operator=(const ReadableFile&) = delete;

  int descriptor() const { return m_descriptor; }
  int64_t size() const { return m_size; }  ///< bytes
  FileBytes bytes() const { return {m_descriptor, m_size}; }

 private:
  int m_descriptor = -1;
  int64_t m_size = 0;
};

}  // namespace velmor::render
