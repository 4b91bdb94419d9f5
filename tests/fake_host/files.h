// Folders and files of one test.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace fake_host {

/// A fresh folder, removed with everything in it at destruction.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  /// The path of `name` in the folder, as a host would hand it over.
  std::string File(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

/// The whole file; a file that cannot be read fails the test and gives an empty text.
std::string ReadText(const std::string& path);
/// The 16-bit little-endian samples of an image, interleaved. An odd last byte fails the test.
std::vector<int16_t> ReadSamples(const std::string& path);
void WriteText(const std::string& path, const std::string& text);
/// Bytes in which no two stretches are alike.
std::string Noise(size_t count, unsigned seed = 1);
bool FileExists(const std::string& path);
int64_t SizeOfFile(const std::string& path);
/// How many descriptors the process holds open.
int OpenDescriptors();

}  // namespace fake_host
