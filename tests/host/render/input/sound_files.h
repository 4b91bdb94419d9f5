// Audio files made for a test, in a folder of its own.
#pragma once

#include <sndfile.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "disc/failure.h"
#include "host/render/input/audio_input.h"

namespace velmor::render::test {

/// A fresh folder, removed with everything in it.
class Folder {
 public:
  Folder();
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string path(std::string_view name) const { return m_path + "/" + std::string(name); }
  /// Writes `bytes` into `name`; returns its path.
  std::string write(std::string_view name, std::string_view bytes) const;

 private:
  std::string m_path;
};

struct Shape {
  int format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
  int rate = 44100;
  int channels = 2;
};

/// Interleaved integer samples of 16 bits, written as such.
void writeShorts(const std::string& path, const Shape& shape, std::span<const int16_t> samples);
/// Interleaved samples of full scale 1.0.
void writeDoubles(const std::string& path, const Shape& shape, std::span<const double> samples);

struct Stereo {
  std::vector<double> left, right;
};
/// Everything `input` delivers, `block` frames at a time.
Stereo readAll(AudioInput& input, size_t block);

/// The 16-bit sample the disc gets for `v`.
int discSample(double v);

/// The message of the `Failure` that `action` throws; empty when it throws none.
template <typename Action>
std::string errorOf(Action action) {
  try {
    action();
  } catch (const Failure& error) {
    return error.what();
  }
  return {};
}

/// The sentence with which `path` is refused, when it is opened or read; empty when it is read
/// whole.
std::string refusalOf(const std::string& path);

std::string contentsOf(const std::string& path);

/// Chunks of RIFF files.
std::string little16(uint32_t value);
std::string little32(uint32_t value);
std::string big16(uint32_t value);
std::string big32(uint32_t value);
/// Id, size, body and, when the body is odd, a pad byte.
std::string riffChunk(std::string_view id, std::string_view body);
/// A RIFF file of `chunks`, in this order.
std::string riffFile(std::string_view chunks);
/// The format chunk of 16-bit stereo at 44100 Hz.
std::string formatChunk();
/// The data chunk of that many silent frames.
std::string dataChunk(size_t frames);

struct CuePoint {
  uint32_t id, frame;
};
/// A cue chunk's body.
std::string cueBody(std::span<const CuePoint> points);
/// Chunks of an "adtl" list.
std::string label(uint32_t id, std::string_view text);
std::string note(uint32_t id, std::string_view text);
std::string region(uint32_t id, uint32_t length, std::string_view text);

/// A FLAC metadata block that others follow.
std::string flacBlock(unsigned type, std::string_view body);
/// A FLAC file of silence with `blocks` alone behind its first one.
std::string flacFile(const Folder& folder, size_t frames, std::string_view blocks);

}  // namespace velmor::render::test
