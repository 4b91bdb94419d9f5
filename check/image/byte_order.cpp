#include "check/image/byte_order.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdlib>

#include "check/image/swapped_bytes.h"
#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

/// Sectors that are looked at, spread evenly.
constexpr int64_t kPieces = 40;

/// Steps from sample to sample in times of how far the samples lie from their mean: 1.3 to 1.4 of
/// noise. Of ten songs it was 0.07 to 0.22 in the right order and 0.87 to 1.33 in the wrong one, of
/// any four seconds of them at most 0.4 in the right one.
constexpr double kNoise = 0.8;

using Sector = std::array<int16_t, static_cast<size_t>(disc::kFramesPerSector) * 2>;

class Roughness {
 public:
  void add(const Sector& samples) {
    for (size_t channel = 0; channel < 2; ++channel) {
      int64_t sum = 0;
      for (size_t i = channel; i < samples.size(); i += 2) sum += samples[i];
      const int64_t mean = sum / disc::kFramesPerSector;
      for (size_t i = channel; i + 2 < samples.size(); i += 2) {
        m_steps += std::abs(samples[i + 2] - samples[i]);
        m_distance += std::abs(samples[i] - mean);
      }
    }
  }

  double value() const {
    return m_distance == 0 ? 0.0 : static_cast<double>(m_steps) / static_cast<double>(m_distance);
  }

 private:
  int64_t m_steps = 0, m_distance = 0;
};

}  // namespace

bool bytesLookSwapped(const ImageFile& image, int64_t first, int64_t end) {
  assert(image.readable() && first <= end);
  const int64_t pieces = std::min(kPieces, end - first);
  Roughness as_read, the_other_way;
  for (int64_t p = 0; p < pieces; ++p) {
    Sector samples{};
    const int64_t sector = first + (end - first) * p / pieces;
    image.readFrames(sector * disc::kFramesPerSector, samples.data(), disc::kFramesPerSector);
    as_read.add(samples);
    std::transform(samples.begin(), samples.end(), samples.begin(), swappedBytes);
    the_other_way.add(samples);
  }
  return as_read.value() > kNoise && the_other_way.value() < as_read.value() / 2;
}

}  // namespace velmor::check
