// What dither keeps of music below the disc's last bit, and what it leaves alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <numbers>

#include "host/render/input/dithered_input.h"
#include "tests/host/render/input/sound_files.h"

namespace velmor::render::test {
namespace {

constexpr int k24BitWav = SF_FORMAT_WAV | SF_FORMAT_PCM_24;
constexpr size_t kSilentFrames = 588;

/// Discrete Fourier transform in place; the size is a power of two.
void transform(std::vector<std::complex<double>>& values) {
  const size_t size = values.size();
  for (size_t i = 1, j = 0; i < size; ++i) {
    size_t bit = size / 2;
    for (; (j & bit) != 0; bit /= 2) j ^= bit;
    j ^= bit;
    if (i < j) std::swap(values[i], values[j]);
  }
  for (size_t length = 2; length <= size; length *= 2) {
    const double angle = -2.0 * std::numbers::pi / static_cast<double>(length);
    for (size_t k = 0; k < length / 2; ++k) {
      const std::complex<double> turn = std::polar(1.0, angle * static_cast<double>(k));
      for (size_t i = k; i < size; i += length) {
        const std::complex<double> other = values[i + length / 2] * turn;
        values[i + length / 2] = values[i] - other;
        values[i] += other;
      }
    }
  }
}

/// Power of each of the transform's lines, in squared 16-bit steps; a sine of that many steps in
/// amplitude has half its square.
std::vector<double> spectrumOf(const std::vector<int>& samples) {
  const auto size = static_cast<double>(samples.size());
  std::vector<std::complex<double>> values(samples.begin(), samples.end());
  transform(values);
  std::vector<double> powers;
  for (size_t i = 0; i < samples.size() / 2; ++i) {
    powers.push_back(2.0 * std::norm(values[i] / size));
  }
  return powers;
}

constexpr size_t kTransformed = size_t{1} << 18;
/// Full waves in that time: 1000.7 Hz, of no simple ratio to anything.
constexpr size_t kWavesOfSine = 5949;

double amplitudeOf(double decibels) {
  return std::pow(10.0, decibels / 20.0);
}

/// The disc's left channel for a sine of 24 bits.
std::vector<int> discOfSine(double decibels, Dither dither) {
  const Folder folder;
  std::vector<double> samples;
  for (size_t i = 0; i < kTransformed; ++i) {
    const double phase = 2.0 * std::numbers::pi *
                         static_cast<double>(i * kWavesOfSine % kTransformed) / kTransformed;
    samples.push_back(amplitudeOf(decibels) * std::sin(phase));
    samples.push_back(amplitudeOf(decibels) * std::cos(phase));
  }
  writeDoubles(folder.path("sine.wav"), {k24BitWav, 44100, 2}, samples);
  const Stereo read = readAll(*AudioInput::open(folder.path("sine.wav"), dither), 4096);
  std::vector<int> disc;
  for (const double sample : read.left) disc.push_back(discSample(sample));
  return disc;
}

/// The strongest line but that of the sine, and the mean of them all.
struct NoiseFloor {
  double strongest = 0.0;
  double mean = 0.0;
};

NoiseFloor floorOf(std::vector<double> spectrum) {
  spectrum.erase(spectrum.begin() + kWavesOfSine);
  spectrum.erase(spectrum.begin());  // the mean value, which is no tone
  NoiseFloor floor;
  for (const double power : spectrum) {
    floor.strongest = std::max(floor.strongest, power);
    floor.mean += power / static_cast<double>(spectrum.size());
  }
  return floor;
}

class QuietSine : public testing::TestWithParam<double> {};

// Of 131,071 lines of even noise, none is 20 times their mean but by a chance of one to thousands;
// the seed is fixed, so there is no other chance.
TEST_P(QuietSine, KeepsItsLineWithNothingElseAboveTheNoise) {
  const std::vector<double> spectrum = spectrumOf(discOfSine(GetParam(), Dither::kTpdf));
  const double steps = amplitudeOf(GetParam()) * 32768.0;
  EXPECT_NEAR(10.0 * std::log10(spectrum[kWavesOfSine] / (steps * steps / 2.0)), 0.0, 1.0);
  const NoiseFloor floor = floorOf(spectrum);
  EXPECT_LT(floor.strongest, 20.0 * floor.mean);
  EXPECT_NEAR(floor.mean * kTransformed / 2.0, 0.25, 0.01)
      << "a quarter of a squared step: a twelfth from rounding, a sixth from the noise";
}

INSTANTIATE_TEST_SUITE_P(Decibels, QuietSine, testing::Values(-120.0, -96.0, -90.0),
                         [](const auto& level) {
                           return "Minus" + std::to_string(-static_cast<int>(level.param));
                         });

TEST(Rounding, LosesASineBelowHalfAStepAndBendsALouderOne) {
  const std::vector<int> lost = discOfSine(-120.0, Dither::kNone);
  EXPECT_EQ(std::count(lost.begin(), lost.end(), 0), std::ptrdiff_t{kTransformed});
  const NoiseFloor floor = floorOf(spectrumOf(discOfSine(-90.0, Dither::kNone)));
  EXPECT_GT(floor.strongest, 1000.0 * floor.mean) << "harmonics, which dither makes noise of";
}

/// The left channel of `left`, with music that is not of 16 bits on the right.
std::vector<double> ditheredLeft(const std::vector<double>& left, size_t block,
                                 int format = SF_FORMAT_WAV | SF_FORMAT_FLOAT, int rate = 44100) {
  const Folder folder;
  std::vector<double> samples;
  for (size_t i = 0; i < left.size(); ++i) {
    samples.push_back(left[i]);
    samples.push_back(0.1 + 1e-6 * static_cast<double>(i % 100));
  }
  writeDoubles(folder.path("a.wav"), {format, rate, 2}, samples);
  return readAll(*AudioInput::open(folder.path("a.wav"), Dither::kTpdf), block).left;
}

constexpr double kOffStep = 0.3 / 32768.0;

TEST(DigitalSilence, StaysSilentFromASectorOnAndIsMusicBelow) {
  for (const size_t length :
       {size_t{1}, kSilentFrames - 1, kSilentFrames, kSilentFrames + 1, size_t{20000}}) {
    for (const size_t at : {size_t{0}, size_t{1}, size_t{16384 - 300}, size_t{16384}}) {
      std::vector<double> left(40000, kOffStep);
      std::fill_n(left.begin() + static_cast<std::ptrdiff_t>(at), length, 0.0);
      const std::vector<double> read = ditheredLeft(left, 1000);
      ASSERT_EQ(read.size(), left.size());
      const auto begin = read.begin() + static_cast<std::ptrdiff_t>(at);
      const auto silent = std::count(begin, begin + static_cast<std::ptrdiff_t>(length), 0.0);
      EXPECT_EQ(silent, length >= kSilentFrames ? static_cast<std::ptrdiff_t>(length) : 0)
          << length << " frames from " << at;
      for (size_t i = 0; i < read.size(); ++i) {
        if (i < at || i >= at + length) {
          ASSERT_NE(read[i], left[i]) << "music at " << i;
        }
      }
    }
  }
}

TEST(DigitalSilence, StaysSilentAtTheEndOfAnInputToo) {
  for (const size_t length : {kSilentFrames - 1, kSilentFrames}) {
    std::vector<double> left(20000, kOffStep);
    std::fill(left.end() - static_cast<std::ptrdiff_t>(length), left.end(), 0.0);
    const std::vector<double> read = ditheredLeft(left, 1024);
    ASSERT_EQ(read.size(), left.size());
    EXPECT_EQ(read.back() == 0.0, length >= kSilentFrames) << length;
  }
}

TEST(DigitalSilence, OfAnotherRateIsSilentOnTheDisc) {
  std::vector<double> left(2 * 48000);
  for (size_t i = 0; i < 48000; ++i) left[i] = 0.5 * std::sin(0.1 * static_cast<double>(i));
  const std::vector<double> read =
      ditheredLeft(left, 1024, SF_FORMAT_WAV | SF_FORMAT_PCM_24, 48000);
  ASSERT_EQ(read.size(), 88200U);
  for (size_t i = 44100 + 8820; i < read.size(); ++i) ASSERT_EQ(discSample(read[i]), 0) << i;
}

TEST(SixteenBits, InAFileOf24StayAsTheyAre) {
  const Folder folder;
  std::vector<int16_t> samples;
  for (int i = 0; i < 60000; ++i) samples.push_back(static_cast<int16_t>(i * 7919 % 65536 - 32768));
  writeShorts(folder.path("a.wav"), {k24BitWav, 44100, 2}, samples);
  const auto input = AudioInput::open(folder.path("a.wav"), Dither::kTpdf);
  const Stereo read = readAll(*input, 777);
  ASSERT_EQ(read.left.size(), 30000U);
  for (size_t i = 0; i < read.left.size(); ++i) {
    ASSERT_EQ(read.left[i] * 32768.0, samples[2 * i]) << i;
    ASSERT_EQ(read.right[i] * 32768.0, samples[2 * i + 1]) << i;
  }
  EXPECT_FALSE(input->hasAddedDither());
}

TEST(Dithering, TellsWhetherItHasChangedAnything) {
  const Folder folder;
  for (const double value : {0.0, 0.25, kOffStep}) {
    writeDoubles(folder.path("a.wav"), {SF_FORMAT_WAV | SF_FORMAT_FLOAT, 44100, 2},
                 std::vector<double>(2 * 5000, value));
    const auto input = AudioInput::open(folder.path("a.wav"), Dither::kTpdf);
    EXPECT_EQ(input->info().to_16_bits, To16Bits::kDithered);
    readAll(*input, 1024);
    EXPECT_EQ(input->hasAddedDither(), value == kOffStep) << value;
  }
}

/// An album renders to the same image for good, so that the numbers behind the noise are not to
/// change. These are the first ones of their generator from the seed 1234567, as published with it.
TEST(Dithering, TakesItsNoiseFromSplitMix64) {
  constexpr std::array kPublished = {uint64_t{6457827717110365317U}, uint64_t{3203168211198807973U},
                                     uint64_t{9817491932198370423U}, uint64_t{4593380528125082431U},
                                     uint64_t{16408922859458223821U}};
  std::array<double, kPublished.size()> samples{};
  samples.fill(kOffStep);
  ChannelDither(1234567).go(samples.data(), samples.size());
  for (size_t i = 0; i < samples.size(); ++i) {
    const auto high = static_cast<double>(kPublished[i] >> 32);
    const auto low = static_cast<double>(kPublished[i] & 0xffffffffU);
    const double noise = std::ldexp(high, -47) - std::ldexp(low, -47);
    EXPECT_NEAR(samples[i], kOffStep + noise, 1e-15) << i;
  }
}

TEST(Dithering, HasSeedsThatDoNotChange) {
  const Folder folder;
  std::vector<double> left(100, kOffStep), right(100, kOffStep);
  writeDoubles(folder.path("a.wav"), {SF_FORMAT_WAV | SF_FORMAT_DOUBLE, 44100, 2},
               std::vector<double>(200, kOffStep));
  ChannelDither(1).go(left.data(), left.size());
  ChannelDither(0x5851f42d4c957f2dU).go(right.data(), right.size());
  const Stereo read = readAll(*AudioInput::open(folder.path("a.wav"), Dither::kTpdf), 100);
  EXPECT_EQ(read.left, left);
  EXPECT_EQ(read.right, right);
}

/// Delivers what no disc holds exactly, and notes how much it is asked for.
class NotingSource : public AudioInput {
 public:
  explicit NotingSource(std::vector<size_t>& asked) : m_asked(asked) { m_info.channels = 2; }
  const InputInfo& info() const override { return m_info; }
  size_t read(double* left, double* right, size_t frames) override {
    m_asked.push_back(frames);
    std::fill_n(left, frames, kOffStep);
    std::fill_n(right, frames, kOffStep);
    return frames;
  }

 private:
  std::vector<size_t>& m_asked;
  InputInfo m_info;
};

TEST(Dithering, ReadsNoFurtherThanItIsAsked) {
  std::vector<size_t> asked;
  DitheredInput input(std::make_unique<NotingSource>(asked));
  std::vector<double> left(1), right(1);
  input.read(left.data(), right.data(), 1);
  ASSERT_EQ(asked.size(), 1U);
  left.resize(asked[0]);
  right.resize(asked[0]);
  EXPECT_EQ(input.read(left.data(), right.data(), asked[0] - 1), asked[0] - 1);
  EXPECT_EQ(asked.size(), 1U) << "all that was read is used, and no more is wanted";
  input.read(left.data(), right.data(), 1);
  EXPECT_EQ(asked.size(), 2U);
}

TEST(Dithering, MakesNoSampleOfFullScaleClip) {
  std::vector<double> left;
  for (int i = 0; i < 20000; ++i) left.push_back(i % 2 == 0 ? 8388607.0 / 8388608.0 : -1.0 + 1e-6);
  for (const double sample : ditheredLeft(left, 1024)) ASSERT_LE(std::abs(sample), 1.0);
}

}  // namespace
}  // namespace velmor::render::test
