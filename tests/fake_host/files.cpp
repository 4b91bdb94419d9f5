#include "tests/fake_host/files.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/kit/whole_files.h"

namespace fake_host {

namespace fs = std::filesystem;

std::string readText(const std::string& path) {
  if (!fs::is_regular_file(path)) ADD_FAILURE() << "cannot read " << path;
  return test_kit::contentOf(path);
}

std::vector<int16_t> readSamples(const std::string& path) {
  const std::string bytes = readText(path);
  if (bytes.size() % 2 != 0) ADD_FAILURE() << path << " ends inside a sample";
  std::vector<int16_t> samples(bytes.size() / 2);
  for (size_t i = 0; i < samples.size(); ++i) {
    const auto low = static_cast<unsigned char>(bytes[2 * i]);
    const auto high = static_cast<unsigned char>(bytes[2 * i + 1]);
    samples[i] = static_cast<int16_t>(low | (high << 8));
  }
  return samples;
}

void writeText(const std::string& path, const std::string& text) {
  test_kit::writeFile(path, text);
}

std::string noise(size_t count, unsigned seed) {
  std::string bytes(count, '\0');
  for (char& byte : bytes) {
    seed = seed * 1664525u + 1013904223u;
    byte = static_cast<char>(seed >> 24);
  }
  return bytes;
}

bool fileExists(const std::string& path) {
  return fs::exists(path);
}

int64_t sizeOfFile(const std::string& path) {
  std::error_code error;
  const auto size = fs::file_size(path, error);
  if (error) {
    ADD_FAILURE() << "no file " << path;
    return -1;
  }
  return static_cast<int64_t>(size);
}

int openDescriptors() {
  int count = 0;
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    (void)entry;
    ++count;
  }
  return count - 1;  // the walk's own
}

}  // namespace fake_host
