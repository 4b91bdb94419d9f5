// One file of audio that a cue sheet names: where its samples lie, and reading them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace velmor::check {

/// How the samples are stored.
enum class SampleForm {
  kLittle,   ///< 16 bit, least significant byte first: BINARY, WAVE
  kBig,      ///< 16 bit, most significant byte first: MOTOROLA, AIFF
  kUnknown,  ///< compressed, another rate or width, or not recognised: not looked into
};

/// Reads 16-bit stereo samples from where they lie in a file. One thread.
class ImageFile {
 public:
  /// Opens `path` for reading as a FILE of `type` ("BINARY"). Never throws: see `problem`.
  ImageFile(const std::filesystem::path& path, std::string_view type);
  ~ImageFile();
  ImageFile(ImageFile&& other) noexcept;
  ImageFile& operator=(ImageFile&&) = delete;

  const std::filesystem::path& path() const { return m_path; }
  /// Why the file cannot be read or looked into, as part of a sentence; empty when it can.
  const std::string& problem() const { return m_problem; }
  /// Is there a regular file, and can it be opened?
  bool exists() const { return m_exists; }
  /// Is it named as WAVE or AIFF, and begins as neither does?
  bool mislabelled() const { return m_mislabelled; }
  SampleForm form() const { return m_form; }
  bool readable() const { return m_form != SampleForm::kUnknown; }
  int64_t bytes() const { return m_bytes; }           ///< of the whole file
  int64_t dataBytes() const { return m_data_bytes; }  ///< of its samples; 0 when unknown
  int64_t sectors() const;                            ///< begun sectors of its samples

  /// Fills `samples` (left and right in turn) from stereo frame `frame` on; returns the whole
  /// frames read, fewer at the end or at a read error.
  size_t readFrames(int64_t frame, int16_t* samples, size_t frames) const;

 private:
  void locateSamples(std::string_view type);
  void locateInWave();
  void locateInAiff();
  size_t readBytes(int64_t offset, void* to, size_t bytes) const;

  std::filesystem::path m_path;
  int m_descriptor = -1;
  bool m_exists = false, m_mislabelled = false;
  SampleForm m_form = SampleForm::kUnknown;
  int64_t m_bytes = 0, m_data_offset = 0, m_data_bytes = 0;
  std::string m_problem;
};

}  // namespace velmor::check
