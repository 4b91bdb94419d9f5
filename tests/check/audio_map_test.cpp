// The scan over an image, held against the plain way to find what it finds.

#include "check/image/audio_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>

#include "disc/units/disc_units.h"
#include "tests/check/test_images.h"

namespace velmor::check::test {
namespace {

using Run = std::tuple<int64_t, int64_t>;  // first frame, samples

std::vector<Run> plainRuns(const std::vector<int16_t>& samples) {
  std::vector<Run> runs;
  for (size_t channel = 0; channel < 2; ++channel) {
    for (size_t i = channel; i < samples.size();) {
      size_t end = i;
      const bool full = samples[i] == INT16_MAX || samples[i] == INT16_MIN;
      while (full && end < samples.size() && samples[end] == samples[i]) end += 2;
      if (end - i >= 2 * kClippedRun) runs.emplace_back(i / 2, (end - i) / 2);
      i = std::max(end, i + 2);
    }
  }
  std::sort(runs.begin(), runs.end());
  return runs;
}

std::vector<Run> scannedRuns(const AudioMap& map) {
  std::vector<Run> runs;
  for (const ClippedRun& r : map.clippedRuns()) runs.emplace_back(r.frame, r.samples);
  std::sort(runs.begin(), runs.end());
  return runs;
}

/// Quiet samples with stretches at full scale, most of them short, some longer than a sector.
std::vector<int16_t> clippedSamples(std::mt19937& random, size_t sectors) {
  std::vector<int16_t> samples(sectors * disc::kFramesPerSector * 2, int16_t{7});
  for (size_t stretch = sectors * 2; stretch > 0; --stretch) {
    const size_t length = random() % 40 == 0 ? random() % 1500 : random() % 6;
    const int16_t level = random() % 2 == 0 ? INT16_MAX : INT16_MIN;
    // Every other one begins near the edge of a stretch of 28 frames, and so of a sector.
    size_t at = random() % samples.size();
    if (random() % 2 == 0) at = at / 56 * 56 + random() % 8;
    for (size_t i = 0; i < length && at + 2 * i < samples.size(); ++i) samples[at + 2 * i] = level;
  }
  return samples;
}

TEST(AudioMap, FindsEveryClippedRunThatAPlainLoopFinds) {
  TemporaryFolder folder;
  std::mt19937 random(5);
  for (int round = 0; round < 20; ++round) {
    const std::vector<int16_t> samples = clippedSamples(random, 300);
    writeFile(folder / "image.bin",
              {reinterpret_cast<const char*>(samples.data()), samples.size() * 2});
    const ImageFile image(folder / "image.bin", "BINARY");
    const AudioMap map = AudioMap::scan(image, {});
    EXPECT_EQ(scannedRuns(map), plainRuns(samples)) << "round " << round;
    EXPECT_GT(map.clippedRuns().size(), 100u);
  }
}

TEST(AudioMap, FollowsARunFromOneReadIntoTheNext) {
  // The image is read 56 sectors at a time.
  constexpr int64_t kRead = 56 * disc::kFramesPerSector;
  TemporaryFolder folder;
  for (int64_t before = 0; before <= 4; ++before) {
    for (const int64_t behind : {int64_t{0}, int64_t{1}, int64_t{2}, int64_t{3}, kRead + 2}) {
      for (const size_t channel : {0u, 1u}) {
        std::vector<int16_t> samples(3 * kRead * 2, int16_t{7});
        for (int64_t f = kRead - before; f < kRead + behind; ++f)
          samples[static_cast<size_t>(f) * 2 + channel] = INT16_MIN;
        writeFile(folder / "image.bin",
                  {reinterpret_cast<const char*>(samples.data()), samples.size() * 2});
        const ImageFile image(folder / "image.bin", "BINARY");
        const AudioMap map = AudioMap::scan(image, {});
        EXPECT_EQ(scannedRuns(map), plainRuns(samples))
            << before << " before, " << behind << " behind, channel " << channel;
        EXPECT_EQ(map.clippedRunsLeftOut(), 0);
      }
    }
  }
}

TEST(AudioMap, FindsARunThatEndsWithTheImage) {
  TemporaryFolder folder;
  std::vector<int16_t> samples(3 * disc::kFramesPerSector * 2, int16_t{7});
  std::fill(samples.end() - 6, samples.end(), INT16_MAX);
  writeFile(folder / "image.bin",
            {reinterpret_cast<const char*>(samples.data()), samples.size() * 2});
  const ImageFile image(folder / "image.bin", "BINARY");
  EXPECT_EQ(scannedRuns(AudioMap::scan(image, {})), plainRuns(samples));
}

TEST(AudioMap, CountsTheClippedRunsThatItDoesNotList) {
  // One run of three in every eight frames of each channel, and one that the image ends in.
  TemporaryFolder folder;
  std::vector<int16_t> samples(700 * disc::kFramesPerSector * 2, int16_t{7});
  for (size_t i = 0; i < samples.size(); ++i)
    if (i / 2 % 8 < 3) samples[i] = INT16_MAX;
  std::fill(samples.end() - 6, samples.end(), INT16_MIN);
  writeFile(folder / "image.bin",
            {reinterpret_cast<const char*>(samples.data()), samples.size() * 2});
  const AudioMap map = AudioMap::scan(ImageFile(folder / "image.bin", "BINARY"), {});
  const auto all = plainRuns(samples);
  ASSERT_GT(all.size(), ClippedRuns::kMost);
  EXPECT_EQ(map.clippedRuns().size(), ClippedRuns::kMost);
  EXPECT_EQ(map.clippedRunsLeftOut(), static_cast<int64_t>(all.size() - ClippedRuns::kMost));
  EXPECT_EQ(scannedRuns(map), decltype(all)(all.begin(), all.begin() + ClippedRuns::kMost));
}

TEST(AudioMap, FindsTheFirstSoundAndCountsTheSilenceBeforeASector) {
  TemporaryFolder folder;
  TestImage(10).silence(2 * 588, 6 * 588).write(folder / "image.bin");
  const AudioMap map = AudioMap::scan(ImageFile(folder / "image.bin", "BINARY"), {});
  EXPECT_EQ(map.firstSound(1, 10), 1);
  EXPECT_EQ(map.firstSound(2, 10), 6);
  EXPECT_EQ(map.firstSound(2, 4), 4);
  EXPECT_EQ(map.firstSound(3, 3), 3);
  EXPECT_EQ(map.silentBefore(10, 0), 0);
  EXPECT_EQ(map.silentBefore(6, 0), 4);
  EXPECT_EQ(map.silentBefore(6, 3), 3);
  EXPECT_EQ(map.silentBefore(4, 4), 0);
}

TEST(AudioMap, TellsASilentChannelAndTwoEqualOnesFromStereo) {
  TemporaryFolder folder;
  const auto look = [&folder](auto shape) {
    std::vector<int16_t> samples(disc::kFramesPerSector * 2);
    for (size_t f = 0; f < samples.size() / 2; ++f) {
      const auto [left, right] = shape(f);
      samples[2 * f] = static_cast<int16_t>(left);
      samples[2 * f + 1] = static_cast<int16_t>(right);
    }
    writeFile(folder / "image.bin",
              {reinterpret_cast<const char*>(samples.data()), samples.size() * 2});
    const auto map = AudioMap::scan(ImageFile(folder / "image.bin", "BINARY"), {});
    const Channels c = map.channels(0);
    return std::tuple(c.left_silent, c.right_silent, c.same);
  };
  using Two = std::pair<int, int>;
  const auto wave = [](size_t f) { return static_cast<int>(f % 100) * 300 - 15000; };
  EXPECT_EQ(look([&](size_t f) { return Two(wave(f), wave(f + 9)); }),
            std::tuple(false, false, false));
  EXPECT_EQ(look([&](size_t f) { return Two(wave(f), wave(f)); }), std::tuple(false, false, true));
  EXPECT_EQ(look([&](size_t f) { return Two(wave(f), wave(f) + 2); }),
            std::tuple(false, false, true));
  EXPECT_EQ(look([&](size_t f) { return Two(wave(f), wave(f) + 3); }),
            std::tuple(false, false, false));
  EXPECT_EQ(look([&](size_t f) { return Two(0, wave(f)); }), std::tuple(true, false, false));
  EXPECT_EQ(look([&](size_t f) { return Two(wave(f), -2); }), std::tuple(false, true, false));
  EXPECT_EQ(look([&](size_t f) { return Two(wave(f), f == 587 ? 3 : 0); }),
            std::tuple(false, false, false));
  EXPECT_EQ(look([&](size_t f) { return Two(wave(f), wave(f) + (f == 587 ? 3 : 0)); }),
            std::tuple(false, false, false));
  EXPECT_EQ(look([](size_t) { return Two(1, -1); }), std::tuple(true, true, true));
  EXPECT_EQ(look([](size_t) { return Two(32767, -32768); }), std::tuple(false, false, false));
}

TEST(AudioMap, CallsASectorSilentOnlyWhenEverySampleIsZero) {
  TemporaryFolder folder;
  std::string bytes(50 * disc::kBytesPerSector, '\0');
  for (size_t s = 1; s < 50; s += 2)
    bytes[s * disc::kBytesPerSector + s * 47] = static_cast<char>(s);
  bytes += std::string(400, '\0');  // a last sector that is not whole
  writeFile(folder / "image.bin", bytes);
  const AudioMap map = AudioMap::scan(ImageFile(folder / "image.bin", "BINARY"), {});
  ASSERT_EQ(map.sectors(), 51);
  for (int64_t s = 0; s < 51; ++s) EXPECT_EQ(map.silent(s), s % 2 == 0) << s;
  EXPECT_FALSE(map.brokeOff());
  EXPECT_EQ(map.peak(0), 0);
  EXPECT_EQ(map.peak(51), 0);
  writeFile(folder / "low.bin", std::string("\0\x80", 2) + std::string(2350, '\0'));
  EXPECT_EQ(AudioMap::scan(ImageFile(folder / "low.bin", "BINARY"), {}).peak(0), 32768);
}

}  // namespace
}  // namespace velmor::check::test
