#include "tests/check/test_images.h"

#include <algorithm>

namespace velmor::check::test {

namespace fs = std::filesystem;

fs::path casesFolder() {
  return fs::path(VELMOR_SOURCE_DIR) / "tests/check/cases";
}

TestImage::TestImage(int64_t sectors) : m_samples(static_cast<size_t>(sectors) * 1176) {
  uint32_t state = 1;
  for (int16_t& s : m_samples) {
    state = state * 1664525u + 1013904223u;
    s = static_cast<int16_t>(1000 + static_cast<int>(state >> 20));
  }
  // What begins at its full level has been cut into.
  fadeIn(0);
}

TestImage& TestImage::fadeIn(int64_t from_frame) {
  const auto first = static_cast<size_t>(from_frame) * 2;
  for (size_t i = 0; i < 1176 && first + i < m_samples.size(); ++i) {
    int16_t& s = m_samples[first + i];
    s = static_cast<int16_t>(1 + s * static_cast<int>(i / 2) / 588);
  }
  return *this;
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

void TestImage::write(const fs::path& path) const {
  writeFile(path, bytes());
}

void writeSparse(const fs::path& path, int64_t bytes) {
  writeFile(path, "");
  fs::resize_file(path, static_cast<uintmax_t>(bytes));
}

}  // namespace velmor::check::test
