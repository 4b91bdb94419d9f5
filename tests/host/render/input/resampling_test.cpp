// Other rates: the length to the frame, the quality, and the dither of what does not fit 16 bits.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "host/render/input/resampler.h"
#include "tests/host/render/input/sound_files.h"

namespace velmor::render::test {
namespace {

std::vector<double> stereoSine(size_t frames, int rate, double hertz, double amplitude) {
  std::vector<double> samples;
  samples.reserve(2 * frames);
  for (size_t i = 0; i < frames; ++i) {
    const double phase = 2.0 * std::numbers::pi * hertz * static_cast<double>(i) / rate;
    samples.push_back(amplitude * std::sin(phase));
    samples.push_back(amplitude * std::cos(phase));
  }
  return samples;
}

constexpr int kFloatWav = SF_FORMAT_WAV | SF_FORMAT_DOUBLE;

TEST(Length, IsTheQuotientRoundedToTheNearestFrame) {
  EXPECT_EQ(framesAtDiscRate(48000, 48000), 44100);
  EXPECT_EQ(framesAtDiscRate(160, 48000), 147);
  EXPECT_EQ(framesAtDiscRate(1, 88200), 1) << "a half goes up";
  EXPECT_EQ(framesAtDiscRate(1, 96000), 0);
  EXPECT_EQ(framesAtDiscRate(1, 22050), 2);
  EXPECT_EQ(framesAtDiscRate(3, 88200), 2);
  EXPECT_EQ(framesAtDiscRate(int64_t{1} << 50, 48000), 1034420539411661);
}

TEST(Length, IsDeliveredToTheFrameAtEveryRate) {
  const Folder folder;
  for (const int rate : {8000, 11025, 22050, 32000, 44099, 44101, 48000, 88200, 96000, 192000}) {
    for (const size_t frames : {3U, 147U, 1000U, 16384U, 16385U, 50001U}) {
      for (const int channels : {1, 2}) {
        const std::string path = folder.path("a.wav");
        const std::vector<double> samples(frames * static_cast<size_t>(channels), 0.5);
        writeDoubles(path, {kFloatWav, rate, channels}, samples);
        const auto input = AudioInput::open(path, Dither::kNone);
        const double exact = static_cast<double>(frames) * 44100.0 / rate;
        EXPECT_EQ(input->info().frames, static_cast<int64_t>(std::floor(exact + 0.5)));
        const Stereo read = readAll(*input, 1024);
        EXPECT_EQ(static_cast<int64_t>(read.left.size()), input->info().frames)
            << frames << " frames at " << rate;
      }
    }
  }
}

struct Sine {
  int rate;
  double hertz;
};

TEST(Resampling, KeepsASineWithinAHundredDecibels) {
  const Folder folder;
  constexpr double kAmplitude = 0.9;
  for (const Sine& sine : {Sine{48000, 1000.0}, Sine{48000, 15000.0}, Sine{96000, 10000.0},
                           Sine{22050, 5000.0}, Sine{8000, 1000.0}, Sine{192000, 997.0}}) {
    const std::string path = folder.path("sine.wav");
    const auto frames = static_cast<size_t>(sine.rate);
    writeDoubles(path, {kFloatWav, sine.rate, 2},
                 stereoSine(frames, sine.rate, sine.hertz, kAmplitude));
    const Stereo read = readAll(*AudioInput::open(path, Dither::kNone), 1024);
    const std::vector<double> expected = stereoSine(44100, 44100, sine.hertz, kAmplitude);
    ASSERT_EQ(read.left.size(), 44100U);
    double worst = 0.0;
    for (size_t i = 11025; i < 33075; ++i) {
      worst = std::max({worst, std::abs(read.left[i] - expected[2 * i]),
                        std::abs(read.right[i] - expected[2 * i + 1])});
    }
    EXPECT_LT(20.0 * std::log10(worst), -100.0) << sine.hertz << " Hz at " << sine.rate;
  }
}

TEST(Resampling, LastsToTheEndOfTheSource) {
  const Folder folder;
  writeDoubles(folder.path("a.wav"), {kFloatWav, 48000, 2}, std::vector<double>(2 * 48000, 0.5));
  const Stereo read = readAll(*AudioInput::open(folder.path("a.wav"), Dither::kNone), 1024);
  ASSERT_EQ(read.left.size(), 44100U);
  // The step at the end is band-limited, but nothing of the signal before it may be missing.
  EXPECT_NEAR(read.left[44100 - 200], 0.5, 1e-3);
  EXPECT_GT(read.left.back(), 0.2);
  EXPECT_GT(read.right.back(), 0.2);
}

TEST(Resampling, DoesNotDependOnTheBlockLength) {
  const Folder folder;
  const std::string path = folder.path("a.wav");
  writeDoubles(path, {kFloatWav, 48000, 2}, stereoSine(10000, 48000, 440.0, 0.7));
  const Stereo whole = readAll(*AudioInput::open(path, Dither::kTpdf), 1 << 16);
  for (const size_t block : {1U, 7U, 1024U, 16384U}) {
    const Stereo pieces = readAll(*AudioInput::open(path, Dither::kTpdf), block);
    EXPECT_EQ(pieces.left, whole.left) << block;
    EXPECT_EQ(pieces.right, whole.right) << block;
  }
}

TEST(Resampling, ASampleThatIsNoNumberSilencesOnlyItself) {
  const Folder folder;
  std::vector<double> samples = stereoSine(48000, 48000, 440.0, 0.5);
  samples[2 * 24000] = std::nan("");
  samples[2 * 24000 + 1] = -std::nan("");
  writeDoubles(folder.path("a.wav"), {kFloatWav, 48000, 2}, samples);
  const Stereo read = readAll(*AudioInput::open(folder.path("a.wav"), Dither::kNone), 1024);
  for (size_t i = 0; i < read.left.size(); ++i) {
    ASSERT_LT(std::abs(read.left[i]), 1.0) << i;
    ASSERT_LT(std::abs(read.right[i]), 1.0) << i;
  }
}

TEST(Resampling, AnInfiniteSampleSaturates) {
  const Folder folder;
  for (const double huge : {HUGE_VAL, 1e300}) {
    std::vector<double> samples(2 * 48000);
    samples[2 * 24000] = huge;
    samples[2 * 24000 + 1] = -huge;
    writeDoubles(folder.path("a.wav"), {kFloatWav, 48000, 2}, samples);
    const Stereo read = readAll(*AudioInput::open(folder.path("a.wav"), Dither::kNone), 1024);
    EXPECT_GT(read.left[22050], 1.0);
    EXPECT_LT(read.right[22050], -1.0);
    for (size_t i = 0; i < read.left.size(); ++i) {
      ASSERT_TRUE(std::isfinite(read.left[i]) && std::isfinite(read.right[i])) << i;
      if (i + 1000 < 22050 || i > 22050 + 1000) {
        ASSERT_LT(std::abs(read.left[i]), 1.0 / 32768.0) << "far from the damage, at " << i;
      }
    }
  }
}

TEST(Dithering, IsTriangularOneStepWideAndTheSameEveryTime) {
  const Folder folder;
  const std::string path = folder.path("a.wav");
  constexpr size_t kFrames = 100000;
  constexpr double kStep = 1.0 / 32768.0;
  writeDoubles(path, {SF_FORMAT_WAV | SF_FORMAT_PCM_24, 44100, 2},
               std::vector<double>(2 * kFrames, 0.25 + 0.3 * kStep));
  const Stereo plain = readAll(*AudioInput::open(path, Dither::kNone), 1024);
  const Stereo dithered = readAll(*AudioInput::open(path, Dither::kTpdf), 1024);
  double sum = 0.0;
  double squares = 0.0;
  double product = 0.0;
  size_t outer = 0;
  for (size_t i = 0; i < kFrames; ++i) {
    const double noise = (dithered.left[i] - plain.left[i]) / kStep;
    const double other = (dithered.right[i] - plain.right[i]) / kStep;
    ASSERT_LE(std::abs(noise), 1.0);
    sum += noise;
    squares += noise * noise;
    product += noise * other;
    if (std::abs(noise) > 0.5) ++outer;
  }
  EXPECT_NEAR(sum / kFrames, 0.0, 0.01);
  EXPECT_NEAR(squares / kFrames, 1.0 / 6.0, 0.005) << "the power of a triangle of this width";
  EXPECT_NEAR(static_cast<double>(outer) / kFrames, 0.25, 0.01) << "a rectangle would have a half";
  EXPECT_NEAR(product / kFrames, 0.0, 0.005) << "the channels' noises are strangers";
  const Stereo again = readAll(*AudioInput::open(path, Dither::kTpdf), 333);
  EXPECT_EQ(again.left, dithered.left);
  EXPECT_EQ(again.right, dithered.right);
}

TEST(Dithering, IsForSourcesThatDoNotFitTheDisc) {
  const Folder folder;
  struct Case {
    Shape shape;
    bool dithered;
  };
  for (const Case& c : {Case{{SF_FORMAT_WAV | SF_FORMAT_PCM_16, 44100, 2}, false},
                        Case{{SF_FORMAT_WAV | SF_FORMAT_PCM_U8, 44100, 1}, false},
                        Case{{SF_FORMAT_WAV | SF_FORMAT_PCM_16, 48000, 2}, true},
                        Case{{SF_FORMAT_WAV | SF_FORMAT_PCM_24, 44100, 1}, true},
                        Case{{SF_FORMAT_WAV | SF_FORMAT_FLOAT, 44100, 2}, true},
                        Case{{SF_FORMAT_OGG | SF_FORMAT_VORBIS, 44100, 2}, true}}) {
    const std::string path = folder.path("a");
    writeDoubles(path, c.shape, std::vector<double>(8000, 0.1234567));
    const Stereo plain = readAll(*AudioInput::open(path, Dither::kNone), 512);
    const Stereo dithered = readAll(*AudioInput::open(path, Dither::kTpdf), 512);
    EXPECT_EQ(plain.left != dithered.left, c.dithered) << std::hex << c.shape.format;
    EXPECT_EQ(plain.right != dithered.right, c.dithered) << std::hex << c.shape.format;
    EXPECT_TRUE(c.shape.channels != 1 || dithered.left == dithered.right);
  }
}

}  // namespace
}  // namespace velmor::render::test
