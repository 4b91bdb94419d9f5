// Triangular dither for 16-bit discs.
#pragma once

#include <cstddef>
#include <cstdint>

namespace velmor::render {

/// Adds noise of triangular density between -1 and +1 step of 16 bits: the sum of two uniform ones,
/// which makes the error's mean and power independent of the music. The sequence is always the
/// same, so that an album renders to the same image every time.
class TpdfDither {
 public:
  explicit TpdfDither(uint64_t seed) : m_state(seed) {}

  void add(double* samples, size_t count) {
    constexpr double kStep = 1.0 / 32768.0;
    constexpr double kUnit = kStep / 4294967296.0;
    for (size_t i = 0; i < count; ++i) {
      const uint64_t bits = next();
      const auto one = static_cast<int64_t>(bits >> 32);
      const auto other = static_cast<int64_t>(bits & 0xffffffffU);
      samples[i] += static_cast<double>(one - other) * kUnit;
    }
  }

 private:
  /// SplitMix64 (Steele, Lea, Flood 2014): every 64-bit value once per period.
  uint64_t next() {
    uint64_t z = (m_state += 0x9e3779b97f4a7c15U);
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
    return z ^ (z >> 31);
  }

  uint64_t m_state;
};

}  // namespace velmor::render
