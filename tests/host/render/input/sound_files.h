// Audio files made for a test, in a folder of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "disc/failure.h"
#include "host/render/input/audio_input.h"
#include "tests/kit/audio_files.h"
#include "tests/kit/scratch_folder.h"
#include "tests/kit/wav.h"
#include "tests/kit/whole_files.h"

namespace velmor::render::test {

using test_kit::big16;
using test_kit::big32;
using test_kit::dataChunk;
using test_kit::formatChunk;
using test_kit::little16;
using test_kit::little32;
using test_kit::readFile;
using test_kit::riffChunk;
using test_kit::riffFile;
using test_kit::writeDoubles;
using test_kit::writeShorts;
using Shape = test_kit::AudioShape;

/// A scratch folder whose files are named and written as text.
class Folder {
 public:
  std::string path(std::string_view name) const { return m_folder.file(std::string(name)); }
  /// Writes `bytes` into `name`; returns its path.
  std::string write(std::string_view name, std::string_view bytes) const;

 private:
  test_kit::ScratchFolder m_folder;
};

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
