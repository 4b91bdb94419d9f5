#include "tests/fake_host/files.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <sstream>

namespace fake_host {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
  std::string pattern = (fs::temp_directory_path() / "velmor-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) ADD_FAILURE() << "no temporary folder " << pattern;
  m_path = pattern;
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  fs::remove_all(m_path, ignored);
}

std::string readText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) ADD_FAILURE() << "cannot read " << path;
  std::ostringstream text;
  text << in.rdbuf();
  return std::move(text).str();
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
  std::ofstream(path, std::ios::binary) << text;
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
