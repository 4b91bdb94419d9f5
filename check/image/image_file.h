// One file of audio that a cue sheet names: where its samples lie, and reading them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmor::cdcheck {

/// How the samples are stored.
enum class SampleForm {
  little,   ///< 16 bit, least significant byte first: BINARY, WAVE
  big,      ///< 16 bit, most significant byte first: MOTOROLA, AIFF
  unknown,  ///< compressed, another rate or width, or not recognised: not looked into
};

/// Reads 16-bit stereo samples from where they lie in a file. One thread.
class ImageFile {
 public:
  /// Opens `path` for reading as a FILE of `type` ("BINARY"). Never throws: see `problem`.
  ImageFile(const std::filesystem::path& path, std::string_view type);
  ~ImageFile();
  ImageFile(ImageFile&& other) noexcept;
  ImageFile& operator=(ImageFile&&) = delete;

  const std::filesystem::path& path() const { return path_; }
  /// Why the file cannot be read or looked into, as part of a sentence; empty when it can.
  const std::string& problem() const { return problem_; }
  /// Is there a regular file, and can it be opened?
  bool exists() const { return exists_; }
  /// Is it named as WAVE or AIFF, and begins as neither does?
  bool mislabelled() const { return mislabelled_; }
  SampleForm form() const { return form_; }
  bool readable() const { return form_ != SampleForm::unknown; }
  int64_t bytes() const { return bytes_; }          ///< of the whole file
  int64_t dataBytes() const { return dataBytes_; }  ///< of its samples; 0 when unknown
  int64_t sectors() const;                          ///< begun sectors of its samples

  /// Fills `samples` (left and right in turn) from stereo frame `frame` on; returns the whole
  /// frames read, fewer at the end or at a read error.
  size_t readFrames(int64_t frame, int16_t* samples, size_t frames) const;

 private:
  void locateSamples(std::string_view type);
  void locateInWave();
  void locateInAiff();
  size_t readBytes(int64_t offset, void* to, size_t bytes) const;

  std::filesystem::path path_;
  int descriptor_ = -1;
  bool exists_ = false, mislabelled_ = false;
  SampleForm form_ = SampleForm::unknown;
  int64_t bytes_ = 0, dataOffset_ = 0, dataBytes_ = 0;
  std::string problem_;
};

}  // namespace velmor::cdcheck
