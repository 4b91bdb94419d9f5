// MPEG streams are taken to their last frame, whether or not a header counts them.
#include <gtest/gtest.h>

#include <random>

#include "tests/host/render/input/sound_files.h"

namespace velmor::render::test {
namespace {

constexpr size_t kMpegFrames = 4 * 44100;

/// Variable rate, loud in one half and silent in the other, which misleads every estimate.
void writeMpeg(const std::string& path, bool loud_first) {
  SF_INFO info{};
  info.format = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
  info.samplerate = 44100;
  info.channels = 2;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  ASSERT_TRUE(file) << sf_strerror(nullptr);
  ASSERT_EQ(sf_command(file, SFC_GET_BITRATE_MODE, nullptr, 0), SF_BITRATE_MODE_VARIABLE);
  std::mt19937 random(7);
  std::vector<double> samples(2 * kMpegFrames);
  for (size_t i = 0; i < samples.size(); ++i) {
    const bool loud = (i < kMpegFrames) == loud_first;
    const double noise = static_cast<double>(random()) / 4294967296.0 - 0.5;
    samples[i] = loud ? noise : 0.0;
  }
  EXPECT_EQ(sf_write_double(file, samples.data(), 2 * kMpegFrames), sf_count_t{2 * kMpegFrames});
  ASSERT_EQ(sf_close(file), 0);
}

/// Without the first frame, which counts the others and holds no sound, and without what is before
/// it.
std::string withoutItsCount(const std::string& bytes) {
  size_t count = bytes.find("Xing");
  if (count == std::string::npos) count = bytes.find("Info");
  if (count == std::string::npos) return {};
  const size_t next = bytes.find("\xff\xfb", count);
  return next == std::string::npos ? std::string() : bytes.substr(next);
}

class MpegLength : public testing::TestWithParam<bool> {};

TEST_P(MpegLength, IsTheEncodersCountWhereThereIsOne) {
  const Folder folder;
  writeMpeg(folder.path("a.mp3"), GetParam());
  const auto input = AudioInput::open(folder.path("a.mp3"), Dither::kNone);
  EXPECT_EQ(input->info().format, "MPEG, layer III (MP3)");
  EXPECT_EQ(input->info().bits, 0);
  EXPECT_EQ(static_cast<size_t>(input->info().frames), kMpegFrames);
  EXPECT_EQ(readAll(*input, 1024).left.size(), kMpegFrames);
}

TEST_P(MpegLength, IsCountedWhereThereIsNone) {
  const Folder folder;
  writeMpeg(folder.path("a.mp3"), GetParam());
  const std::string bare = withoutItsCount(readFile(folder.path("a.mp3")));
  ASSERT_FALSE(bare.empty());
  const auto input = AudioInput::open(folder.write("bare.mp3", bare), Dither::kNone);
  // All of the sound, and at most the encoder's padding of a few frames of 1152 samples.
  EXPECT_GE(static_cast<size_t>(input->info().frames), kMpegFrames);
  EXPECT_LE(static_cast<size_t>(input->info().frames), kMpegFrames + 4 * 1152);
  EXPECT_EQ(static_cast<int64_t>(readAll(*input, 1024).left.size()), input->info().frames);
}

INSTANTIATE_TEST_SUITE_P(Loudness, MpegLength, testing::Bool(), [](const auto& test) {
  return std::string(test.param ? "LoudFirst" : "SilentFirst");
});

}  // namespace
}  // namespace velmor::render::test
