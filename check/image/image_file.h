// One file of audio that a cue sheet names: where its samples lie, and reading them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "disc/audio/sound_file.h"
#include "disc/audio/stated_length.h"

namespace velmor::check {

/// How the samples are stored.
enum class SampleForm {
  kLittle,   ///< 16 bit, least significant byte first: BINARY
  kBig,      ///< 16 bit, most significant byte first: MOTOROLA
  kDecoded,  ///< 16 bit, as libsndfile delivers them: WAVE, AIFF, FLAC
  kUnknown,  ///< compressed with losses, another rate, width or number of channels: not looked into
};

/// Reads the 16-bit stereo samples of a file. One thread.
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
  /// What its first bytes say that it is, whatever its type.
  disc::Container container() const { return m_container; }
  /// Is it named as WAVE or AIFF, and is something else? FLAC named WAVE is not counted: many
  /// readers take it.
  bool mislabelled() const { return m_mislabelled; }
  /// "WAV, 24 bit, 48000 Hz, mono" where a disc has 16 bit, 44100 Hz and two channels; else empty.
  const std::string& wrongFormat() const { return m_wrong_format; }
  /// Does it end before the audio that its header states?
  bool breaksOff() const { return m_sound && m_sound->breaksOff(); }
  /// Bytes of a container's header that a raw image begins with, and that will sound; 0: none.
  int64_t headerBytes() const { return m_header_bytes; }
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
  void openSound();
  size_t readRaw(int64_t frame, int16_t* samples, size_t frames) const;
  size_t readSound(int64_t frame, int16_t* samples, size_t frames) const;

  std::filesystem::path m_path;
  int m_descriptor = -1;
  bool m_exists = false, m_mislabelled = false;
  disc::Container m_container = disc::Container::kOther;
  SampleForm m_form = SampleForm::kUnknown;
  int64_t m_bytes = 0, m_data_bytes = 0, m_header_bytes = 0;
  std::unique_ptr<disc::SoundFile> m_sound;  ///< of a container that libsndfile decodes
  mutable int64_t m_sound_frame = 0;         ///< the one that it would deliver next
  std::string m_problem, m_wrong_format;
};

}  // namespace velmor::check
