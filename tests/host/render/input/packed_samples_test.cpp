// Plain samples, however they are taken: by the frame, by the stretch, one at a time or several at
// once, they are the doubles that the decoder gives.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <random>

#include "host/render/input/formats/plain_pcm.h"
#include "tests/host/render/input/sound_files.h"

namespace velmor::render::test {
namespace {

struct Packing {
  const char* name;
  int format;
  int channels;
  bool is_packed;  ///< whether its stretches hold the samples as they lie in the file
};

void PrintTo(const Packing& packing, std::ostream* out) {
  *out << packing.name;
}

const std::vector<Packing> kPackings{
    {"SixteenBits", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 2, true},
    {"TwentyFourBits", SF_FORMAT_WAV | SF_FORMAT_PCM_24, 2, true},
    {"ThirtyTwoBits", SF_FORMAT_WAVEX | SF_FORMAT_PCM_32, 2, true},
    {"MonoOfSixteenBits", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 1, true},
    {"MonoOfTwentyFourBits", SF_FORMAT_RF64 | SF_FORMAT_PCM_24, 1, true},
    {"MonoOfThirtyTwoBits", SF_FORMAT_W64 | SF_FORMAT_PCM_32, 1, true},
    {"SixChannels", SF_FORMAT_WAV | SF_FORMAT_PCM_24, 6, false},
    {"BigEndian", SF_FORMAT_AIFF | SF_FORMAT_PCM_24, 2, false},
    {"EightBits", SF_FORMAT_WAV | SF_FORMAT_PCM_U8, 2, false},
    {"Float", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 2, false},
    {"Flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 2, false},
};

constexpr size_t kPackedFrames = 40001;  // more than two blocks

class Packed : public testing::TestWithParam<Packing> {
 protected:
  void SetUp() override {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> music(-1.0, 1.0);
    const auto channels = static_cast<size_t>(GetParam().channels);
    std::vector<double> samples(kPackedFrames * channels);
    for (double& sample : samples) sample = music(random);
    for (size_t i = 0; i < 4 * channels; ++i) samples[i] = i % 2 == 0 ? 1.0 : -1.0;
    writeDoubles(m_path, {GetParam().format, 44100, GetParam().channels}, samples);
    m_decoded = decoded(channels);
  }
  std::unique_ptr<AudioInput> open() const { return AudioInput::open(m_path, Dither::kNone); }

  /// What libsndfile gives of the first two channels.
  Stereo decoded(size_t channels) const {
    SF_INFO info{};
    SNDFILE* const file = sf_open(m_path.c_str(), SFM_READ, &info);
    std::vector<double> samples(kPackedFrames * channels);
    EXPECT_EQ(sf_readf_double(file, samples.data(), kPackedFrames), sf_count_t{kPackedFrames});
    sf_close(file);
    Stereo all;
    for (size_t i = 0; i < kPackedFrames; ++i) {
      all.left.push_back(samples[i * channels]);
      all.right.push_back(samples[i * channels + (channels > 1 ? 1 : 0)]);
    }
    return all;
  }
  /// Reads the rest, which begins at frame `at`, in stretches of `frames`, and each of them in
  /// copies of `step`.
  void expectStretches(AudioInput& input, size_t at, size_t frames, size_t step) const {
    AudioStretch stretch;
    std::vector<double> left(step);
    std::vector<double> right(step);
    for (input.readStretch(stretch, frames); stretch.frames() > 0;
         input.readStretch(stretch, frames)) {
      ASSERT_LE(stretch.frames(), frames);
      for (size_t i = 0; i < stretch.frames(); i += step) {
        const size_t count = std::min(step, stretch.frames() - i);
        stretch.copy(i, count, left.data(), right.data());
        for (size_t k = 0; k < count; ++k, ++at) {
          ASSERT_EQ(left[k], m_decoded.left[at]) << "frame " << at;
          ASSERT_EQ(right[k], m_decoded.right[at]) << "frame " << at;
        }
      }
    }
    EXPECT_EQ(at, kPackedFrames);
  }

  Folder m_folder;
  const std::string m_path = m_folder.path("a");
  Stereo m_decoded;
};

INSTANTIATE_TEST_SUITE_P(Files, Packed, testing::ValuesIn(kPackings),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(Packed, SamplesReadByTheFrameAreTheDecoders) {
  for (const size_t block : {7U, 1000U, 20000U}) {
    const Stereo all = readAll(*open(), block);
    ASSERT_EQ(all.left.size(), kPackedFrames);
    EXPECT_TRUE(all.left == m_decoded.left) << block;
    EXPECT_TRUE(all.right == m_decoded.right) << block;
  }
}

TEST_P(Packed, SamplesReadByTheStretchAreTheDecoders) {
  for (const size_t frames : {1000U, 16384U, 100000U}) {
    for (const size_t step : {1U, 6U, 1024U}) expectStretches(*open(), 0, frames, step);
  }
}

TEST_P(Packed, SamplesStayPackedOnlyWhereThatIsLessToCarry) {
  AudioStretch stretch;
  open()->readStretch(stretch, 100);
  EXPECT_EQ(stretch.frames(), 100U);
  EXPECT_EQ(stretch.isPacked(), GetParam().is_packed);
}

TEST_P(Packed, StretchesGoOnWhereFramesWereRead) {
  const auto input = open();
  std::vector<double> left(5);
  std::vector<double> right(5);
  ASSERT_EQ(input->read(left.data(), right.data(), 5), 5U);
  EXPECT_EQ(left[4], m_decoded.left[4]);
  expectStretches(*input, 5, 3000, 512);
}

TEST_P(Packed, AStretchOfAFileThatHasShrunkSaysWhereItBreaksOff) {
  const auto input = open();
  AudioStretch stretch;
  input->readStretch(stretch, 1000);
  std::filesystem::resize_file(m_path, std::filesystem::file_size(m_path) / 4);
  const std::string sentence = errorOf([&] {
    while (stretch.frames() > 0) input->readStretch(stretch, 1000);
  });
  EXPECT_THAT(sentence, testing::AllOf(testing::HasSubstr(m_path),
                                       testing::HasSubstr("breaks off or is damaged at 0:00 of "
                                                          "0:00; copy or export it again")));
}

TEST(PlainStereo, IsDecodedFourFramesAtATimeAsOneByOne) {
  if (!processorDecodesByVectors()) GTEST_SKIP() << "no AVX2 here";
  std::mt19937 random(6);
  for (const size_t bytes : {2U, 3U, 4U}) {
    for (size_t frames = 0; frames <= 21; ++frames) {
      // Exactly as long as promised: the sanitizing build sees any read beyond it.
      std::vector<std::byte> packed(2 * bytes * frames + kPlainSlack);
      for (std::byte& byte : packed) byte = static_cast<std::byte>(random());
      std::vector<double> left(frames), right(frames), expected_left(frames),
          expected_right(frames);
      const size_t done =
          decodePlainStereoByVectors(packed.data(), bytes, left.data(), right.data(), frames);
      ASSERT_EQ(done, frames / 4 * 4);
      decodePlainSamples(packed.data(), bytes, 2 * bytes, expected_left.data(), done);
      decodePlainSamples(packed.data() + bytes, bytes, 2 * bytes, expected_right.data(), done);
      EXPECT_EQ(left, expected_left) << bytes << " bytes, " << frames << " frames";
      EXPECT_EQ(right, expected_right) << bytes << " bytes, " << frames << " frames";
    }
  }
}

}  // namespace
}  // namespace velmor::render::test
