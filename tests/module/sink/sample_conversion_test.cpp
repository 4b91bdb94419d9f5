#include "module/sink/sample_conversion.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace conversion_test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int16_t kUntouched = 0x5A5A;

/// Round half up, saturated; NaN is silence.
int16_t formula(double x) {
  if (std::isnan(x)) return 0;
  const double v = x * 32768.0;
  if (v <= -32768.0) return -32768;
  if (v >= 32767.0) return 32767;
  return static_cast<int16_t>(std::floor(v + 0.5));
}

void convertFastest(const double* left, const double* right, int frames, int16_t* out) {
  convertFrames(left, right, 1, frames, out);
}

/// The vector forms, the plain one, and the way that takes the fastest.
std::vector<VectorForm> allForms() {
  const std::span<const VectorForm> vector_forms = vectorForms();
  std::vector<VectorForm> forms(vector_forms.begin(), vector_forms.end());
  forms.push_back({"Plain", convertFramesPlain, true});
  forms.push_back({"Fastest", convertFastest, true});
  return forms;
}

class Conversion : public testing::TestWithParam<VectorForm> {
 protected:
  void SetUp() override {
    if (!GetParam().runs_here) GTEST_SKIP() << "this processor lacks the unit";
  }
  /// Converts the samples as the left channel and, from the other end, as the right one, so that
  /// each passes through every lane.
  void expectFormula(const std::vector<double>& samples) {
    const int frames = static_cast<int>(samples.size());
    const std::vector<double> reversed(samples.rbegin(), samples.rend());
    std::vector<int16_t> out(samples.size() * 2, kUntouched);
    GetParam().convert(samples.data(), reversed.data(), frames, out.data());
    for (size_t i = 0; i < samples.size(); ++i) {
      ASSERT_EQ(out[2 * i], formula(samples[i])) << "left " << i << std::hexfloat << samples[i];
      ASSERT_EQ(out[2 * i + 1], formula(reversed[i]))
          << "right " << i << std::hexfloat << reversed[i];
    }
  }
};

INSTANTIATE_TEST_SUITE_P(Forms, Conversion, testing::ValuesIn(allForms()),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

TEST_P(Conversion, HoldsForEveryHalfStepOfTheRangeAndItsNeighbours) {
  std::vector<double> samples;
  for (int half_steps = -65536 - 8; half_steps <= 65536 + 8; ++half_steps) {
    const double x = half_steps / 65536.0;
    for (const double sample : {x, std::nextafter(x, kInfinity), std::nextafter(x, -kInfinity)}) {
      samples.push_back(sample);
    }
  }
  // A second pass in another order puts each sample into other lanes.
  for (int shift = 0; shift < 4; ++shift) {
    samples.insert(samples.begin(), 0.25);
    expectFormula(samples);
  }
}

struct Value {
  double sample;
  int expected;
};

TEST_P(Conversion, GivesTheKnownValues) {
  const Value values[] = {
      {0.0, 0},
      {-0.0, 0},
      {1.0, 32767},
      {-1.0, -32768},
      {0.5, 16384},
      {-0.5, -16384},
      {0.49999 / 32768, 0},
      {0.5 / 32768, 1},
      {-0.5 / 32768, 0},
      {-0.50001 / 32768, -1},
      {-1.5 / 32768, -1},
      {1.5 / 32768, 2},
      {32766.4 / 32768, 32766},
      {32766.5 / 32768, 32767},
      {32767.0 / 32768, 32767},
      {-32767.5 / 32768, -32767},
      {-32767.6 / 32768, -32768},
      {1.0000001, 32767},
      {-1.0000001, -32768},
      {65536.0, 32767},
      {-65536.0, -32768},
      // Where a conversion to 32 or 64 bits would have no answer.
      {65535.99999, 32767},
      {131072.5, 32767},
      {-131072.5, -32768},
      {1e15, 32767},
      {-1e15, -32768},
      {std::numeric_limits<double>::max(), 32767},
      {std::numeric_limits<double>::lowest(), -32768},
      {kInfinity, 32767},
      {-kInfinity, -32768},
      {std::numeric_limits<double>::denorm_min(), 0},
      {-std::numeric_limits<double>::denorm_min(), 0},
      {std::numeric_limits<double>::min(), 0},
      {-std::numeric_limits<double>::min(), 0},
      {kNaN, 0},
      {-kNaN, 0},
      {std::bit_cast<double>(0x7FF0000000000001ull), 0},  // signalling
      {std::bit_cast<double>(0xFFFFFFFFFFFFFFFFull), 0},
  };
  for (const Value& value : values) {
    for (int frames = 1; frames <= 9; ++frames) {
      const std::vector<double> left(static_cast<size_t>(frames), value.sample);
      const std::vector<double> right(static_cast<size_t>(frames), 0.5);
      std::vector<int16_t> out(left.size() * 2);
      GetParam().convert(left.data(), right.data(), frames, out.data());
      for (size_t i = 0; i < left.size(); ++i) {
        ASSERT_EQ(out[2 * i], value.expected) << std::hexfloat << value.sample;
        ASSERT_EQ(out[2 * i + 1], 16384) << std::hexfloat << value.sample;
      }
    }
  }
}

TEST_P(Conversion, OneWildSampleAnywhereIsSeenAndLeavesTheOthersAlone) {
  for (const Value& wild : {Value{kNaN, 0}, Value{kInfinity, 32767}, Value{1e15, 32767}}) {
    for (size_t at = 0; at < 34; ++at) {
      std::vector<double> channels[2] = {std::vector<double>(17, 0.75),
                                         std::vector<double>(17, -0.25)};
      channels[at % 2][at / 2] = wild.sample;
      std::vector<int16_t> out(34);
      GetParam().convert(channels[0].data(), channels[1].data(), 17, out.data());
      for (size_t i = 0; i < 34; ++i) {
        const int healthy = i % 2 == 0 ? 24576 : -8192;
        ASSERT_EQ(out[i], i == at ? wild.expected : healthy) << wild.sample << " at " << at;
      }
    }
  }
}

TEST_P(Conversion, WritesTheFramesAskedForAndNoMore) {
  for (int frames = 0; frames <= 67; ++frames) {
    // Exactly as long as the frames: the sanitizing build sees any read beyond them.
    std::vector<double> left;
    std::vector<double> right;
    for (int i = 0; i < frames; ++i) {
      left.push_back(i / 100.0);
      right.push_back(-i / 90.0);
    }
    std::vector<int16_t> out(static_cast<size_t>(frames) * 2 + 8, kUntouched);
    GetParam().convert(left.data(), right.data(), frames, out.data());
    for (size_t i = 0; i < static_cast<size_t>(frames); ++i) {
      ASSERT_EQ(out[2 * i], formula(left[i])) << frames;
      ASSERT_EQ(out[2 * i + 1], formula(right[i])) << frames;
    }
    for (size_t i = static_cast<size_t>(frames) * 2; i < out.size(); ++i) {
      ASSERT_EQ(out[i], kUntouched) << frames;
    }
  }
}

TEST_P(Conversion, AcceptsAnyAlignment) {
  std::vector<double> left(64);
  std::vector<double> right(64);
  for (size_t i = 0; i < 64; ++i) {
    left[i] = std::sin(static_cast<double>(i));
    right[i] = std::cos(static_cast<double>(i));
  }
  for (size_t l = 0; l < 4; ++l) {
    for (size_t r = 0; r < 4; ++r) {
      for (size_t o = 0; o < 16; ++o) {
        std::vector<int16_t> out(160, kUntouched);
        GetParam().convert(left.data() + l, right.data() + r, 41, out.data() + o);
        for (size_t i = 0; i < 41; ++i) {
          ASSERT_EQ(out[o + 2 * i], formula(left[l + i]));
          ASSERT_EQ(out[o + 2 * i + 1], formula(right[r + i]));
        }
        if (o > 0) {
          ASSERT_EQ(out[o - 1], kUntouched);
        }
        ASSERT_EQ(out[o + 82], kUntouched);
      }
    }
  }
}

TEST_P(Conversion, DuplicatesAChannelGivenTwice) {
  std::vector<double> mono(1001);
  for (size_t i = 0; i < mono.size(); ++i) mono[i] = std::sin(static_cast<double>(i) * 0.01) * 1.1;
  std::vector<int16_t> out(mono.size() * 2);
  GetParam().convert(mono.data(), mono.data(), 1001, out.data());
  for (size_t i = 0; i < mono.size(); ++i) {
    ASSERT_EQ(out[2 * i], formula(mono[i]));
    ASSERT_EQ(out[2 * i + 1], out[2 * i]);
  }
}

// A block with one wild sample is converted in another way: these are all tame.
TEST_P(Conversion, HoldsForRandomSamples) {
  std::mt19937_64 random(4);
  std::uniform_real_distribution<double> around_full_scale(-1.02, 1.02);
  std::vector<double> samples(400000);
  for (double& sample : samples) sample = around_full_scale(random);
  expectFormula(samples);
}

TEST_P(Conversion, HoldsForRandomBitsOfEverySizeThatMatters) {
  std::mt19937_64 random(7);
  constexpr uint64_t kSignAndFraction = 0x800FFFFFFFFFFFFF;
  std::vector<double> samples(200000);
  for (double& sample : samples) {
    const uint64_t exponent = 1023 - 20 + random() % 24;  // from a 32nd of a step to 24 dB too loud
    sample = std::bit_cast<double>((random() & kSignAndFraction) | exponent << 52);
  }
  expectFormula(samples);
}

TEST_P(Conversion, HoldsForRandomBits) {
  std::mt19937_64 random(8);
  std::vector<double> samples(200000);
  for (double& sample : samples) sample = std::bit_cast<double>(random());
  expectFormula(samples);
}

// A library in the host's process may leave the processor so.
TEST(ConversionInAnotherRoundingMode, IsStillTheFormula) {
  std::mt19937_64 random(6);
  std::uniform_real_distribution<double> around_full_scale(-1.02, 1.02);
  std::vector<double> samples(4099);
  for (double& sample : samples) sample = around_full_scale(random);
  for (const int mode : {FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO}) {
    std::vector<int16_t> out(2 * samples.size());
    ASSERT_EQ(std::fesetround(mode), 0);
    convertFrames(samples.data(), samples.data(), 1, static_cast<int>(samples.size()), out.data());
    ASSERT_EQ(std::fesetround(FE_TONEAREST), 0);
    for (size_t i = 0; i < samples.size(); ++i) {
      ASSERT_EQ(out[2 * i], formula(samples[i])) << mode << " " << std::hexfloat << samples[i];
      ASSERT_EQ(out[2 * i + 1], out[2 * i]) << mode;
    }
  }
}

TEST(ConversionWithSpacing, ReadsEverySpacingthSample) {
  std::mt19937_64 random(5);
  std::uniform_real_distribution<double> around_full_scale(-1.02, 1.02);
  for (int spacing = 1; spacing <= 7; ++spacing) {
    for (int frames = 0; frames <= 67; ++frames) {
      const auto length = static_cast<size_t>(frames == 0 ? 0 : (frames - 1) * spacing + 1);
      std::vector<double> left(length, kNaN);
      std::vector<double> right(length, kNaN);
      for (int i = 0; i < frames; ++i) {
        left[static_cast<size_t>(i) * static_cast<size_t>(spacing)] = around_full_scale(random);
        right[static_cast<size_t>(i) * static_cast<size_t>(spacing)] = around_full_scale(random);
      }
      std::vector<int16_t> out(static_cast<size_t>(frames) * 2 + 2, kUntouched);
      convertFrames(left.data(), right.data(), spacing, frames, out.data());
      for (int i = 0; i < frames; ++i) {
        const auto at = static_cast<size_t>(i);
        const size_t from = at * static_cast<size_t>(spacing);
        ASSERT_EQ(out[2 * at], formula(left[from]));
        ASSERT_EQ(out[2 * at + 1], formula(right[from]));
      }
      ASSERT_EQ(out[static_cast<size_t>(frames) * 2], kUntouched);
    }
  }
}

TEST(ConversionWithSpacing, ReadsAnInterleavedBufferOfAnyChannels) {
  for (int channels = 1; channels <= 6; ++channels) {
    std::vector<double> interleaved(static_cast<size_t>(channels * 500));
    for (size_t i = 0; i < interleaved.size(); ++i) {
      interleaved[i] = std::sin(static_cast<double>(i));
    }
    const double* right = interleaved.data() + (channels > 1 ? 1 : 0);
    std::vector<int16_t> out(1000);
    convertFrames(interleaved.data(), right, channels, 500, out.data());
    for (size_t i = 0; i < 500; ++i) {
      ASSERT_EQ(out[2 * i], formula(interleaved[i * static_cast<size_t>(channels)]));
      ASSERT_EQ(out[2 * i + 1], formula(right[i * static_cast<size_t>(channels)]));
    }
  }
}

TEST(ConversionWithSpacing, ReadsBackwardsAndASingleSampleOverAndOver) {
  const std::vector<double> samples = {-1.0, -0.5, 0.25, 0.5, 1.0};
  std::vector<int16_t> out(10);
  convertFrames(samples.data() + 4, samples.data() + 4, -1, 5, out.data());
  EXPECT_EQ(out, (std::vector<int16_t>{32767, 32767, 16384, 16384, 8192, 8192, -16384, -16384,
                                       -32768, -32768}));
  convertFrames(samples.data() + 1, samples.data() + 2, 0, 5, out.data());
  EXPECT_EQ(out, (std::vector<int16_t>{-16384, 8192, -16384, 8192, -16384, 8192, -16384, 8192,
                                       -16384, 8192}));
}

}  // namespace
}  // namespace conversion_test
