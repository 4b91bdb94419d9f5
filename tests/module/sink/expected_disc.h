// Expected images and sheets, put together by hand.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/fake_host/session.h"

namespace expected {

inline constexpr int64_t kFramesPerSecond = 44100;
inline constexpr int64_t kSectorFrames = 588;
inline constexpr int64_t kSectorBytes = 2352;

/// The lines, each with the sheet's line end.
inline std::string sheet(const std::vector<std::string>& lines) {
  std::string sheet;
  for (const std::string& line : lines) sheet += line + "\r\n";
  return sheet;
}

/// An image under construction: stretches of the test signal and of silence.
class Image {
 public:
  Image& signal(int64_t first, int64_t end) {
    const std::vector<int16_t> frames = fake_host::signalFrames(first, end - first);
    m_samples.insert(m_samples.end(), frames.begin(), frames.end());
    return *this;
  }
  Image& silence(int64_t frames) {
    m_samples.resize(m_samples.size() + static_cast<size_t>(2 * frames), 0);
    return *this;
  }
  Image& toSector() {
    const auto frames = static_cast<int64_t>(m_samples.size() / 2);
    return silence((kSectorFrames - frames % kSectorFrames) % kSectorFrames);
  }
  const std::vector<int16_t>& samples() const { return m_samples; }

 private:
  std::vector<int16_t> m_samples;
};

/// Compares sample by sample and names the first frame that differs.
inline void expectImage(const std::string& path, const Image& image) {
  const std::vector<int16_t> found = fake_host::readSamples(path);
  const std::vector<int16_t>& wanted = image.samples();
  EXPECT_EQ(found.size(), wanted.size()) << "samples in " << path;
  const auto differing = std::mismatch(found.begin(), found.end(), wanted.begin(), wanted.end());
  if (differing.first == found.end() || differing.second == wanted.end()) return;
  const auto i = differing.first - found.begin();
  FAIL() << "frame " << i / 2 << ", channel " << i % 2 << " of " << path << " is "
         << *differing.first << ", not " << *differing.second;
}

}  // namespace expected
