// From doubles to 16 bits: every value against the plain rule.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

// The rule as it is written down: clamp, else round half up.
int16_t plain(double x) {
  const double v = x * 32768.0;
  if (std::isnan(v)) return 0;
  if (v <= -32768.0) return -32768;
  if (v >= 32767.0) return 32767;
  return static_cast<int16_t>(std::floor(v + 0.5));
}

class Conversion : public BoundSession, public testing::Test {
 protected:
  // The image's samples of a render of `channels`.
  std::vector<int16_t> convert(const std::vector<std::vector<double>>& channels,
                               const BlockSchedule& schedule = {}) {
    Sink sink = createSink("disc.cue", {.track_mode = kOneTrack});
    EXPECT_TRUE(sink);
    sink.write(channels, schedule);
    sink.destroy();
    return fake_host::readSamples(file("disc.bin"));
  }
  int16_t convertOne(double x) { return convert({{x}, {0.0}}).at(0); }

  void expectPlain(const std::vector<double>& left, const std::vector<double>& right,
                   const BlockSchedule& schedule) {
    const std::vector<int16_t> samples = convert({left, right}, schedule);
    ASSERT_EQ(samples.size(), 2 * left.size());
    for (size_t i = 0; i < left.size(); ++i) {
      ASSERT_EQ(samples[2 * i], plain(left[i])) << "left " << left[i] * 32768.0 << " at " << i;
      ASSERT_EQ(samples[2 * i + 1], plain(right[i])) << "right " << right[i] * 32768.0;
    }
  }
};

TEST_F(Conversion, KnownValuesComeOutAsTheyMust) {
  struct Case {
    double x;
    int16_t sample;
  };
  const Case cases[] = {{1.0, 32767},
                        {-1.0, -32768},
                        {0.5, 16384},
                        {-0.5, -16384},
                        {0.0, 0},
                        {-0.0, 0},
                        {0.49999 / 32768, 0},
                        {0.5 / 32768, 1},
                        {-0.5 / 32768, 0},
                        {-0.50001 / 32768, -1},
                        {1.5 / 32768, 2},
                        {2.5 / 32768, 3},
                        {-1.5 / 32768, -1},
                        {-2.5 / 32768, -2},
                        {32766.49 / 32768, 32766},
                        {32766.5 / 32768, 32767},
                        {32767.0 / 32768, 32767},
                        {-32767.5 / 32768, -32767},
                        {-32767.51 / 32768, -32768},
                        {1.5, 32767},
                        {-1.5, -32768},
                        {1e300, 32767},
                        {-1e300, -32768},
                        {kInfinity, 32767},
                        {-kInfinity, -32768},
                        {5e-324, 0},
                        {-5e-324, 0},
                        {kNaN, 0},
                        {-kNaN, 0},
                        {std::numeric_limits<double>::signaling_NaN(), 0}};
  for (const Case& c : cases) EXPECT_EQ(convertOne(c.x), c.sample) << c.x * 32768.0;
}

TEST_F(Conversion, EveryIntegerAndHalfStepWithBothNeighboursIsExact) {
  std::vector<double> values;
  for (int half = -2 * 32770; half <= 2 * 32770; ++half) {
    const double v = half / 2.0;
    for (const double near : {std::nextafter(v, -kInfinity), v, std::nextafter(v, kInfinity)}) {
      values.push_back(near / 32768.0);
    }
  }
  std::vector<double> reversed(values.rbegin(), values.rend());
  expectPlain(values, reversed, {.lengths = {1024}});
  expectPlain(values, reversed, {.lengths = {1, 2, 3, 5, 7, 8, 9, 15, 17, 33, 1023, 4097}});
  expectPlain(values, reversed, {.lengths = {1021}, .offset = 3, .spacing = 2});
}

TEST_F(Conversion, NothingDependsOnWhereInABlockASampleLies) {
  // One special value at a time among ordinary ones, at every place of a short block.
  for (const double special : {kNaN, kInfinity, -kInfinity, -0.5 / 32768, 2.0, -2.0}) {
    for (size_t place = 0; place < 19; ++place) {
      std::vector<double> left(19, 0.25);
      std::vector<double> right(19, -0.25);
      left[place] = special;
      right[18 - place] = special;
      expectPlain(left, right, {.lengths = {19}});
    }
  }
}

TEST_F(Conversion, MonoGoesToBothChannels) {
  const std::vector<double> mono = {0.1, -0.2, 0.3, kNaN, 1.0, -1.0, 0.0, 0.7, 0.8};
  for (const int length : {1, 4, 9}) {
    const auto samples = convert({mono}, {.lengths = {length}, .channels = 1});
    ASSERT_EQ(samples.size(), 2 * mono.size());
    for (size_t i = 0; i < mono.size(); ++i) {
      EXPECT_EQ(samples[2 * i], plain(mono[i]));
      EXPECT_EQ(samples[2 * i + 1], plain(mono[i]));
    }
  }
}

TEST_F(Conversion, OfSixChannelsTheFirstTwoAreWritten) {
  const std::vector<std::vector<double>> six = {{0.1, 0.2}, {-0.1, -0.2}, {0.9, 0.9},
                                                {0.9, 0.9}, {0.9, 0.9},   {0.9, 0.9}};
  EXPECT_THAT(convert(six, {.channels = 6}),
              testing::ElementsAre(plain(0.1), plain(-0.1), plain(0.2), plain(-0.2)));
}

TEST_F(Conversion, FramesAreTakenFromTheirOffsetAtTheirSpacing) {
  std::vector<double> left;
  std::vector<double> right;
  for (int i = 0; i < 300; ++i) {
    left.push_back(i / 400.0);
    right.push_back(-i / 500.0);
  }
  for (const int offset : {0, 1, 2, 17}) {
    for (const int spacing : {1, 2, 3, 6}) {
      expectPlain(left, right, {.lengths = {64, 1, 31}, .offset = offset, .spacing = spacing});
    }
  }
}

TEST_F(Conversion, ChannelsInterleavedInOneBufferAreTakenApart) {
  double interleaved[] = {0.1, -0.1, 0.2, -0.2, 0.3, -0.3};
  double* channels[] = {interleaved, interleaved + 1};
  Sink sink = createSink("disc.cue");
  sink->WriteDoubles(channels, 3, 2, 0, 2);
  sink.destroy();
  EXPECT_THAT(fake_host::readSamples(file("disc.bin")),
              testing::ElementsAre(plain(0.1), plain(-0.1), plain(0.2), plain(-0.2), plain(0.3),
                                   plain(-0.3)));
}

TEST_F(Conversion, SpacingMayRunBackwards) {
  double samples[] = {0.3, 0.2, 0.1};
  double* channels[] = {samples, samples};
  Sink sink = createSink("disc.cue");
  sink->WriteDoubles(channels, 3, 2, 2, -1);
  sink.destroy();
  EXPECT_THAT(
      fake_host::readSamples(file("disc.bin")),
      testing::ElementsAre(plain(0.1), plain(0.1), plain(0.2), plain(0.2), plain(0.3), plain(0.3)));
}

TEST_F(Conversion, TheHostsSamplesAreNotTouched) {
  const std::vector<double> original = {0.5, kInfinity, -2.0, 0.1};
  std::vector<double> samples = original;
  double* channels[] = {samples.data(), samples.data()};
  Sink sink = createSink("disc.cue");
  sink->WriteDoubles(channels, 4, 2, 0, 1);
  EXPECT_EQ(samples, original);
}

TEST_F(Conversion, NoFramesAreNothing) {
  Sink sink = createSink("disc.cue");
  ASSERT_TRUE(sink);
  for (const int length : {0, -1, std::numeric_limits<int>::min()}) {
    sink->WriteDoubles(nullptr, length, 2, 0, 1);
  }
  EXPECT_EQ(sink->GetLength(), 0.0);
  EXPECT_TRUE(host.marker_calls.size() <= 1U) << "not even the markers were looked at";
  sink.destroy();
  EXPECT_EQ(fake_host::sizeOfFile(file("disc.bin")), 0);
}

}  // namespace
}  // namespace sink_test
