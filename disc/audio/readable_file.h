// A file that the user has named, opened for reading, with a message for everything that may be
// wrong with the name.
#pragma once

#include <cstdint>
#include <string>

#include "disc/audio/file_bytes.h"
#include "disc/failure.h"

namespace velmor::disc {

/// An open regular file; closes it. Used by one thread at a time.
class ReadableFile {
 public:
  /// Throws `Failure` when `path` is missing, forbidden, a folder, a device or a pipe.
  explicit ReadableFile(const std::string& path);
  ~ReadableFile();
  ReadableFile(const ReadableFile&) = delete;
  ReadableFile& operator=(const ReadableFile&) = delete;

  int descriptor() const { return m_descriptor; }
  int64_t size() const { return m_size; }  ///< bytes
  FileBytes bytes() { return {m_descriptor, m_size, m_failure}; }
  /// From the position on, as many bytes as there are; how many. Where the system refuses to read,
  /// none, and the position goes to the file's end, lest somebody tries for ever.
  int64_t read(void* to, size_t count);
  /// Bytes from the beginning; of `read` alone.
  int64_t position() const { return m_position; }
  void setPosition(int64_t position) { m_position = position; }
  /// All bytes, of a file that nothing has been read of yet. Throws `Failure`.
  std::string contents() const;
  /// Throws `Failure` when the system has refused to read since the file was opened: what was then
  /// made of the file is made of bytes that are missing.
  void checkReading() const;

 private:
  std::string m_path;
  int m_descriptor = -1;
  int64_t m_size = 0;
  int64_t m_position = 0;
  int m_failure = 0;  ///< error of the last read that was refused
};

}  // namespace velmor::disc
