// Folders with sheets and images that the tests make for themselves.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/kit/scratch_folder.h"
#include "tests/kit/wav.h"
#include "tests/kit/whole_files.h"

namespace velmor::check::test {

using test_kit::readFile;
using test_kit::wavHeader;
using test_kit::writeFile;
using TemporaryFolder = test_kit::ScratchFolder;

/// The folder of the committed sheets.
std::filesystem::path casesFolder();

/// Stereo samples, to be shaped and written as an image.
class TestImage {
 public:
  /// Sound that fades in, is never zero and never at full scale.
  explicit TestImage(int64_t sectors);

  TestImage& silence(int64_t from_frame, int64_t to_frame);
  /// The sound from there on begins softly.
  TestImage& fadeIn(int64_t from_frame);
  /// The left channel at `level` for `frames`.
  TestImage& level(int64_t from_frame, int64_t frames, int16_t level);
  void write(const std::filesystem::path& path) const;
  std::string bytes() const;

 private:
  std::vector<int16_t> m_samples;
};

/// Digital silence that takes no room on the disk.
void writeSparse(const std::filesystem::path& path, int64_t bytes);

}  // namespace velmor::check::test
