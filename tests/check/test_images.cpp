#include "tests/check/test_images.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace velmor::check::test {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::string name = (fs::temp_directory_path() / "cdcheck.XXXXXX").string();
  if (!::mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
  m_path = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(m_path, ignored);
}

std::string readFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(in), {}};
}

void writeFile(const fs::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

fs::path casesFolder() {
  return fs::path(VELMOR_SOURCE_DIR) / "tests/check/cases";
}

TestImage::TestImage(int64_t sectors) : m_samples(static_cast<size_t>(sectors) * 1176) {
  uint32_t state = 1;
  for (int16_t& s : m_samples) {
    state = state * 1664525u + 1013904223u;
    s = static_cast<int16_t>(1000 + static_cast<int>(state >> 20));
  }
}

TestImage& TestImage::silence(int64_t from_frame, int64_t to_frame) {
  std::fill(m_samples.begin() + from_frame * 2, m_samples.begin() + to_frame * 2, int16_t{0});
  return *this;
}

TestImage& TestImage::level(int64_t from_frame, int64_t frames, int16_t level) {
  for (int64_t f = from_frame; f < from_frame + frames; ++f)
    m_samples[static_cast<size_t>(f) * 2] = level;
  return *this;
}

std::string TestImage::bytes() const {
  return {reinterpret_cast<const char*>(m_samples.data()), m_samples.size() * 2};
}

std::string waveHeader(uintmax_t bytes) {
  const auto size = static_cast<uint32_t>(bytes);
  std::string header = "RIFF";
  const auto put = [&header](uint32_t value, int width) {
    for (int i = 0; i < width; ++i) header += static_cast<char>(value >> 8 * i);
  };
  put(size + 36, 4);
  header += "WAVEfmt ";
  put(16, 4);
  put(1, 2);  // PCM
  put(2, 2);
  put(44100, 4);
  put(176400, 4);
  put(4, 2);
  put(16, 2);
  header += "data";
  put(size, 4);
  return header;
}

void TestImage::write(const fs::path& path) const {
  writeFile(path, bytes());
}

void writeSparse(const fs::path& path, int64_t bytes) {
  writeFile(path, "");
  fs::resize_file(path, static_cast<uintmax_t>(bytes));
}

}  // namespace velmor::check::test
