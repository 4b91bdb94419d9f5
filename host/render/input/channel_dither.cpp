#include "host/render/input/channel_dither.h"

#include <algorithm>
#include <cmath>

namespace velmor::render {

namespace {

constexpr double kSteps = 32768.0;

/// What a resampler leaves of silence is not quite 0: so far beside a step, in steps, is on it. No
/// format of 32 bits or fewer has a value as near.
constexpr double kNearlyOn = 1.0 / (1 << 20);

/// Added and taken off again, it rounds what is far below it to the nearest whole number: the last
/// bit of numbers of its size is worth 1.
constexpr double kRounder = 6755399441055744.0;  // 1.5 * 2^52

/// Frames that are looked at together; of music one in 256 fits by chance where it has 24 bits.
constexpr size_t kTogether = 32;

bool fits16Bits(double sample) {
  const double steps = sample * kSteps;
  const double nearest = (steps + kRounder) - kRounder;
  return std::fabs(steps - nearest) <= kNearlyOn && std::fabs(steps) <= kSteps;
}

bool noneFits16Bits(const double* samples, size_t count) {
  int fitting = 0;
  for (size_t i = 0; i < count; ++i) fitting += fits16Bits(samples[i]) ? 1 : 0;
  return fitting == 0;
}

/// SplitMix64 (Steele, Lea, Flood 2014): its value number `at` from `seed`.
uint64_t randomBits(uint64_t seed, uint64_t at) {
  uint64_t z = seed + (at + 1) * 0x9e3779b97f4a7c15U;
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9U;
  z = (z ^ (z >> 27)) * 0x94d049bb133111ebU;
  return z ^ (z >> 31);
}

double noise(uint64_t bits) {
  constexpr double kUnit = 1.0 / kSteps / 4294967296.0;
  const auto one = static_cast<int64_t>(bits >> 32);
  const auto other = static_cast<int64_t>(bits & 0xffffffffU);
  return static_cast<double>(one - other) * kUnit;
}

/// The noise makes no sample clip, and one that clips keeps its magnitude, of which the user is
/// told.
double withNoise(double sample, double noise) {
  return std::fabs(sample) <= 1.0 ? std::clamp(sample + noise, -1.0, 1.0) : sample;
}

}  // namespace

void ChannelDither::go(double* samples, size_t count) {
  for (size_t i = 0; i < count; i += kTogether) {
    const size_t some = std::min(kTogether, count - i);
    if (m_fitting == 0 && noneFits16Bits(samples + i, some)) {
      add(samples + i, some, m_frame);
      m_frame += some;
    } else {
      goOneByOne(samples + i, some);
    }
  }
}

void ChannelDither::goOneByOne(double* samples, size_t count) {
  for (size_t i = 0; i < count; ++i, ++m_frame) {
    if (fits16Bits(samples[i])) {
      ++m_fitting;
      continue;
    }
    const size_t waiting = undecided();
    add(samples + i - waiting, waiting + 1, m_frame - waiting);
    m_fitting = 0;
  }
}

void ChannelDither::end(double* end) {
  const size_t waiting = undecided();
  add(end - waiting, waiting, m_frame - waiting);
  m_fitting = 0;
}

void ChannelDither::add(double* samples, size_t count, uint64_t frame) {
  for (size_t i = 0; i < count; ++i) {
    samples[i] = withNoise(samples[i], noise(randomBits(m_seed, frame + i)));
  }
  m_has_added = m_has_added || count > 0;
}

}  // namespace velmor::render
