// One audio file open for decoding, of a length that is known exactly.
#pragma once

#include <sndfile.h>

#include <memory>
#include <string>

#include "disc/failure.h"
#include "host/render/input/formats/raw_samples.h"
#include "host/render/input/formats/readable_file.h"

namespace velmor::render {

class SoundFile {
 public:
  /// Throws `Failure` when `path` is no readable audio file, holds no audio or breaks off before
  /// what its header states.
  explicit SoundFile(const std::string& path, RawSamples raw = RawSamples::kNone);

  SNDFILE* handle() const { return m_handle.get(); }
  const SF_INFO& info() const { return m_info; }  ///< `frames` is what can be read in all
  FileBytes bytes() const { return m_file->bytes(); }
  /// Throws `Failure` when the system has refused to read the file somewhere.
  void checkReading() const { m_file->checkReading(); }

 private:
  struct Close {
    void operator()(SNDFILE* handle) const { sf_close(handle); }
  };

  void open(const std::string& path);
  void openRaw(const std::string& path, RawSamples raw);
  void openEndless(const std::string& path);
  void decode(const std::string& path, SF_VIRTUAL_IO& access);
  void settleMpegLength(const std::string& path);
  [[noreturn]] void refuseUnreadable(const std::string& path) const;

  std::unique_ptr<ReadableFile> m_file;
  SF_INFO m_info{};
  std::unique_ptr<SNDFILE, Close> m_handle;  ///< closed before the file it reads
};

}  // namespace velmor::render
