// One audio file open for decoding, of a length that is known exactly.
#pragma once

#include <sndfile.h>

#include <memory>
#include <string>

#include "disc/audio/raw_samples.h"
#include "disc/audio/readable_file.h"
#include "disc/failure.h"

namespace velmor::disc {

/// What becomes of a file that holds no audio, or breaks off before what its header states.
enum class Incomplete { kRefused, kTaken };

class SoundFile {
 public:
  /// Throws `Failure` when `path` is no readable audio file or, unless it is to be taken, an
  /// incomplete one.
  explicit SoundFile(const std::string& path, Incomplete incomplete = Incomplete::kRefused,
                     RawSamples raw = RawSamples::kNone);

  SNDFILE* handle() const { return m_handle.get(); }
  const SF_INFO& info() const { return m_info; }  ///< `frames` is what can be read in all
  /// Does the file end before the audio that its header states?
  bool breaksOff() const { return m_breaks_off; }
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

  const Incomplete m_incomplete;
  bool m_breaks_off = false;
  std::unique_ptr<ReadableFile> m_file;
  SF_INFO m_info{};
  std::unique_ptr<SNDFILE, Close> m_handle;  ///< closed before the file it reads
};

}  // namespace velmor::disc
