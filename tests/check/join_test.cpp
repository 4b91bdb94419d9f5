// Where one sound ends and another begins.
#include "check/image/join.h"

#include <gtest/gtest.h>

#include <cmath>

namespace velmor::check::test {
namespace {

/// A tone of each channel, in radians a frame: frames `first` to `first + kJoinFrames`.
std::vector<int16_t> tones(double left, double right, size_t first) {
  std::vector<int16_t> samples;
  for (size_t f = first; f < first + kJoinFrames; ++f) {
    for (const double turn : {left, right})
      samples.push_back(static_cast<int16_t>(8000.0 * std::sin(turn * static_cast<double>(f))));
  }
  return samples;
}

constexpr double kTone = 0.05;
constexpr double kOther = 0.0731;

TEST(Join, RunsOnWhereBothChannelsGoOn) {
  EXPECT_EQ(joinBetween(tones(kTone, kOther, 0), tones(kTone, kOther, kJoinFrames)), Join::kRunsOn);
}

TEST(Join, IsHeardInEitherChannelAlone) {
  const std::vector<int16_t> before = tones(kTone, kTone, 0);
  EXPECT_EQ(joinBetween(before, tones(kOther, kTone, kJoinFrames)), Join::kBetweenSounds);
  EXPECT_EQ(joinBetween(before, tones(kTone, kOther, kJoinFrames)), Join::kBetweenSounds);
}

}  // namespace
}  // namespace velmor::check::test
