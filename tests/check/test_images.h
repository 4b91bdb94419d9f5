// Folders with sheets and images that the tests make for themselves.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace velmor::check::test {

/// A fresh folder, gone at the end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return m_path; }
  std::filesystem::path operator/(const std::string& name) const { return m_path / name; }

 private:
  std::filesystem::path m_path;
};

std::string readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const std::string& bytes);
/// The folder of the committed sheets.
std::filesystem::path casesFolder();

/// Stereo samples, to be shaped and written as an image.
class TestImage {
 public:
  /// Sound that is never zero and never at full scale.
  explicit TestImage(int64_t sectors);

  TestImage& silence(int64_t from_frame, int64_t to_frame);
  /// The left channel at `level` for `frames`.
  TestImage& level(int64_t from_frame, int64_t frames, int16_t level);
  void write(const std::filesystem::path& path) const;
  std::string bytes() const;

 private:
  std::vector<int16_t> m_samples;
};

/// What makes a WAVE file of so many bytes of 16-bit stereo samples when it stands before them.
std::string waveHeader(uintmax_t bytes);

/// Digital silence that takes no room on the disk.
void writeSparse(const std::filesystem::path& path, int64_t bytes);

}  // namespace velmor::check::test
