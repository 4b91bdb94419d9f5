// A source that fits the disc comes through with its very samples, whatever it is packed in.
#include <gtest/gtest.h>

#include <random>

#include "tests/host/render/input/sound_files.h"

namespace velmor::render::test {
namespace {

struct Container {
  const char* name;
  const char* file;
  int format;
  int bits;
};

void PrintTo(const Container& container, std::ostream* out) {
  *out << container.name;
}

const std::vector<Container> kContainers{
    {"Wav", "a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 16},
    {"WavBigEndian", "a.wav", SF_ENDIAN_BIG | SF_FORMAT_WAV | SF_FORMAT_PCM_16, 16},
    {"WavExtensible", "a.wav", SF_FORMAT_WAVEX | SF_FORMAT_PCM_16, 16},
    {"Aiff", "a.aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 16},
    {"AiffLittleEndian", "a.aiff", SF_ENDIAN_LITTLE | SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 16},
    {"Flac", "a.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 16},
    {"W64", "a.w64", SF_FORMAT_W64 | SF_FORMAT_PCM_16, 16},
    {"Rf64", "a.rf64", SF_FORMAT_RF64 | SF_FORMAT_PCM_16, 16},
    {"Caf", "a.caf", SF_FORMAT_CAF | SF_FORMAT_PCM_16, 16},
    {"CafAppleLossless", "a.caf", SF_FORMAT_CAF | SF_FORMAT_ALAC_16, 16},
    {"Au", "a.au", SF_FORMAT_AU | SF_FORMAT_PCM_16, 16},
    {"WavOfEightBits", "a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, 8},
    {"AiffOfEightBits", "a.aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_S8, 8},
    {"FlacOfEightBits", "a.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_S8, 8},
    {"CafOfEightBits", "a.caf", SF_FORMAT_CAF | SF_FORMAT_PCM_S8, 8},
    {"AuOfEightBits", "a.au", SF_FORMAT_AU | SF_FORMAT_PCM_S8, 8},
};

/// Every value a sample can have, upwards on the left and mixed on the right.
std::vector<int16_t> everySample(int bits) {
  std::mt19937 random(17);
  const int step = 1 << (16 - bits);
  std::vector<int16_t> samples;
  for (int value = -32768; value <= 32767; value += step) {
    const int other = static_cast<int>(random() % 65536U) - 32768;
    samples.push_back(static_cast<int16_t>(value));
    samples.push_back(static_cast<int16_t>(other & -step));
  }
  return samples;
}

class ExactContainer : public testing::TestWithParam<Container> {};

TEST_P(ExactContainer, KeepsEverySampleEvenWhenDitherIsAskedFor) {
  const Container& container = GetParam();
  const Folder folder;
  const std::string path = folder.path(container.file);
  const std::vector<int16_t> samples = everySample(container.bits);
  writeShorts(path, {container.format, 44100, 2}, samples);

  for (const Dither dither : {Dither::kNone, Dither::kTpdf}) {
    const auto input = AudioInput::open(path, dither);
    EXPECT_EQ(input->info().bits, container.bits);
    EXPECT_EQ(input->info().rate, 44100);
    EXPECT_EQ(input->info().channels, 2);
    const Stereo read = readAll(*input, 1000);
    ASSERT_EQ(read.left.size(), samples.size() / 2);
    EXPECT_EQ(static_cast<size_t>(input->info().frames), samples.size() / 2);
    for (size_t i = 0; i < read.left.size(); ++i) {
      ASSERT_EQ(discSample(read.left[i]), samples[2 * i]) << "frame " << i;
      ASSERT_EQ(discSample(read.right[i]), samples[2 * i + 1]) << "frame " << i;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Containers, ExactContainer, testing::ValuesIn(kContainers),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Input, MonoGoesToBothChannels) {
  const Folder folder;
  const std::vector<int16_t> samples{0, 1, -1, 32767, -32768, 1234};
  writeShorts(folder.path("mono.wav"), {SF_FORMAT_WAV | SF_FORMAT_PCM_16, 44100, 1}, samples);
  const auto input = AudioInput::open(folder.path("mono.wav"), Dither::kNone);
  EXPECT_EQ(input->info().channels, 1);
  const Stereo read = readAll(*input, 4);
  ASSERT_EQ(read.left.size(), samples.size());
  EXPECT_EQ(read.left, read.right);
  for (size_t i = 0; i < samples.size(); ++i) EXPECT_EQ(discSample(read.left[i]), samples[i]);
}

TEST(Input, OfSixChannelsTheFirstTwoAreTaken) {
  const Folder folder;
  constexpr size_t kFrames = 30000;  // more than one block
  std::vector<int16_t> samples;
  for (size_t i = 0; i < kFrames; ++i) {
    for (size_t channel = 0; channel < 6; ++channel) {
      samples.push_back(static_cast<int16_t>((i * 7 + channel * 5000) % 30011));
    }
  }
  writeShorts(folder.path("six.wav"), {SF_FORMAT_WAV | SF_FORMAT_PCM_16, 44100, 6}, samples);
  const auto input = AudioInput::open(folder.path("six.wav"), Dither::kNone);
  EXPECT_EQ(input->info().channels, 6);
  const Stereo read = readAll(*input, 777);
  ASSERT_EQ(read.left.size(), kFrames);
  for (size_t i = 0; i < kFrames; ++i) {
    ASSERT_EQ(discSample(read.left[i]), samples[6 * i]) << "frame " << i;
    ASSERT_EQ(discSample(read.right[i]), samples[6 * i + 1]) << "frame " << i;
  }
}

TEST(Input, AFileOfManyChannelsIsReadWhole) {
  const Folder folder;
  constexpr size_t kChannels = 200;
  constexpr size_t kFrames = 1000;
  std::vector<int16_t> samples(kChannels * kFrames);
  for (size_t i = 0; i < kFrames; ++i) {
    samples[i * kChannels] = static_cast<int16_t>(i);
    samples[i * kChannels + 1] = static_cast<int16_t>(-static_cast<int>(i));
  }
  writeShorts(folder.path("many.wav"), {SF_FORMAT_WAV | SF_FORMAT_PCM_16, 44100, kChannels},
              samples);
  const auto input = AudioInput::open(folder.path("many.wav"), Dither::kNone);
  const Stereo read = readAll(*input, 1024);
  ASSERT_EQ(read.left.size(), kFrames);
  EXPECT_EQ(discSample(read.left[999]), 999);
  EXPECT_EQ(discSample(read.right[999]), -999);
}

TEST(Input, SaysWhatItIsInPeoplesWords) {
  const Folder folder;
  const std::vector<double> samples(20, 0.25);
  struct Case {
    int format;
    const char* text;
    int bits;
  };
  for (const Case& c : {Case{SF_FORMAT_WAV | SF_FORMAT_PCM_24, "WAV, 24 bit", 24},
                        Case{SF_FORMAT_WAVEX | SF_FORMAT_PCM_32, "WAV, 32 bit", 32},
                        Case{SF_FORMAT_AIFF | SF_FORMAT_FLOAT, "AIFF, 32 bit float", 0},
                        Case{SF_FORMAT_CAF | SF_FORMAT_DOUBLE, "CAF, 64 bit float", 0},
                        Case{SF_FORMAT_FLAC | SF_FORMAT_PCM_24, "FLAC, 24 bit", 24},
                        Case{SF_FORMAT_OGG | SF_FORMAT_VORBIS, "Ogg, Vorbis", 0}}) {
    writeDoubles(folder.path("a"), {c.format, 44100, 2}, samples);
    const auto input = AudioInput::open(folder.path("a"), Dither::kNone);
    EXPECT_EQ(input->info().format, c.text);
    EXPECT_EQ(input->info().bits, c.bits) << c.text;
    EXPECT_EQ(input->info().path, folder.path("a"));
  }
}

}  // namespace
}  // namespace velmor::render::test
