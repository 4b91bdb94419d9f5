// Sheets that name audio files of every kind: what of it is no audio of a disc is told.

#include "tests/kit/audio_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/check/reader_process.h"
#include "tests/check/test_images.h"

namespace velmor::check::test {
namespace {

using test_kit::AudioShape;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr int kFrames = 400 * 588;
constexpr int kStereo16 = SF_FORMAT_PCM_16;

struct Named {
  const char* name;
  int format;
  const char* type;
};

class AudioFilesTest : public testing::Test {
 protected:
  ProcessResult run(const std::string& file, std::vector<std::string> options = {}) {
    writeFile(m_folder / "disc.cue",
              "FILE " + file + "\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n");
    options.insert(options.begin(), {VELMOR_CDCHECK, "disc.cue"});
    return runProcess(options, m_folder.path().string());
  }

  /// Sound in both channels, never at full scale, that differs between them.
  void write(const std::string& name, int format, int rate = 44100, int channels = 2) {
    std::vector<int16_t> samples = test_kit::noise(kFrames, channels);
    for (int16_t& s : samples) s = static_cast<int16_t>(s / 4);
    test_kit::writeShorts((m_folder / name).string(), AudioShape{format, rate, channels}, samples);
  }

  void cut(const std::string& name, int64_t bytes) {
    std::filesystem::resize_file(m_folder / name, static_cast<uintmax_t>(bytes));
  }

  void expectNoSecondSheet(const std::string& file) {
    EXPECT_NE(run(file, {"--portable", "p.cue", "--toc", "p.toc"}).status, 0);
    EXPECT_FALSE(std::filesystem::exists(m_folder / "p.cue"));
    EXPECT_FALSE(std::filesystem::exists(m_folder / "p.toc"));
  }

  TemporaryFolder m_folder;
};

struct Kind {
  const char* what;
  int format;
  int rate, channels;
};

class FormatOfNoDisc : public AudioFilesTest, public testing::WithParamInterface<Kind> {};

TEST_P(FormatOfNoDisc, IsAnErrorInWaveAndAiffWhateverTheReader) {
  const Kind& kind = GetParam();
  write("a.wav", SF_FORMAT_WAV | kind.format, kind.rate, kind.channels);
  write("a.aiff", SF_FORMAT_AIFF | kind.format, kind.rate, kind.channels);
  for (const std::string file : {"a.wav WAVE", "a.aiff AIFF"}) {
    const ProcessResult result = run(file);
    EXPECT_EQ(result.status, 1) << result.all;
    EXPECT_THAT(result.out, AllOf(HasSubstr("error line 1 [audio-format]"), HasSubstr(kind.what)));
    EXPECT_EQ(run(file, {"--for", "mpv"}).status, 1);
    expectNoSecondSheet(file);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Such, FormatOfNoDisc,
    testing::Values(Kind{"16 bit, 48000 Hz, stereo", kStereo16, 48000, 2},
                    Kind{"16 bit, 44100 Hz, mono", kStereo16, 44100, 1},
                    Kind{"16 bit, 44100 Hz, 6 channels", kStereo16, 44100, 6},
                    Kind{"24 bit, 44100 Hz, stereo", SF_FORMAT_PCM_24, 44100, 2},
                    Kind{"32 bit float, 44100 Hz, stereo", SF_FORMAT_FLOAT, 44100, 2}));

TEST_F(AudioFilesTest, OfTheDiscsOwnFormatAreLookedIntoInEveryContainer) {
  std::vector<int16_t> samples = test_kit::noise(kFrames, 2);
  for (int16_t& s : samples) s = static_cast<int16_t>(s / 4);
  for (size_t i = 2 * 300 * 588; i < 2 * (300 * 588 + 5); i += 2) samples[i] = 32767;
  for (const auto& [name, format, type] :
       {Named{"a.wav", SF_FORMAT_WAV, "WAVE"}, Named{"b.wav", SF_FORMAT_WAVEX, "WAVE"},
        Named{"c.wav", SF_FORMAT_RF64, "WAVE"}, Named{"a.aiff", SF_FORMAT_AIFF, "AIFF"},
        Named{"b.aifc", SF_FORMAT_AIFF | SF_ENDIAN_LITTLE, "AIFF"},
        Named{"a.flac", SF_FORMAT_FLAC, "WAVE"}}) {
    test_kit::writeShorts((m_folder / name).string(), {format | SF_FORMAT_PCM_16}, samples);
    const ProcessResult result = run(std::string(name) + ' ' + type);
    EXPECT_EQ(result.status, 0) << name << result.all;
    EXPECT_THAT(result.out, HasSubstr("1 runs of samples at full scale, the longest 5, the first "
                                      "at 00:04:00"))
        << name;
  }
}

TEST_F(AudioFilesTest, WhoseHeaderWouldSoundIsToldWithItsLength) {
  write("a.wav", SF_FORMAT_WAV | kStereo16);
  const ProcessResult result = run("a.wav BINARY");
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.out, HasSubstr("[header-in-image] \"a.wav\" begins with the header of a WAVE "
                                    "file, and BINARY takes its 44 bytes for samples"));
  EXPECT_THAT(result.out, HasSubstr("Write FILE \"a.wav\" WAVE"));
  EXPECT_THAT(result.out, Not(HasSubstr("Pad it with zeros")));
  expectNoSecondSheet("a.wav BINARY");
  write("a.aiff", SF_FORMAT_AIFF | kStereo16);
  EXPECT_THAT(run("a.aiff MOTOROLA").out, HasSubstr("takes its 54 bytes for samples"));
  write("a.flac", SF_FORMAT_FLAC | kStereo16);
  EXPECT_THAT(run("a.flac BINARY").out,
              AllOf(HasSubstr("[header-in-image]"), HasSubstr("noise"), HasSubstr("Decode it")));
}

TEST_F(AudioFilesTest, ThatBreakOffAreNotToBePadded) {
  for (const auto& [name, format, type] :
       {Named{"a.wav", SF_FORMAT_WAV, "WAVE"}, Named{"a.aiff", SF_FORMAT_AIFF, "AIFF"}}) {
    write(name, format | kStereo16);
    cut(name, 350 * 2352 + 1000);
    const std::string file = std::string(name) + ' ' + type;
    const ProcessResult result = run(file);
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.out,
                AllOf(HasSubstr("[audio-breaks-off]"), HasSubstr("00:04:51 of it are there"),
                      HasSubstr("Copy or export it again"), Not(HasSubstr("Pad it"))));
    expectNoSecondSheet(file);
  }
  write("a.flac", SF_FORMAT_FLAC | kStereo16);
  cut("a.flac", 300000);
  EXPECT_THAT(run("a.flac WAVE").out, HasSubstr("error line 1 [image-unreadable] reading broke"));
}

TEST_F(AudioFilesTest, OfFlacNamedWaveAreJudgedByWhoReadsThem) {
  write("a.flac", SF_FORMAT_FLAC | kStereo16);
  const ProcessResult any = run("a.flac WAVE");
  EXPECT_EQ(any.status, 0);
  EXPECT_THAT(any.out, AllOf(HasSubstr("warning line 1 [flac-as-wave]"),
                             HasSubstr("Refused by libburn, cdrdao, libcdio and chdman"),
                             HasSubstr("Decode it (flac -d) and write FILE \"a.wav\" WAVE"),
                             Not(HasSubstr("BINARY"))));
  for (const std::string taking : {"mpv", "cuetools", "metaflac", "shnsplit"})
    EXPECT_THAT(run("a.flac WAVE", {"--for", taking}).out, Not(HasSubstr("flac-as-wave")))
        << taking;
  EXPECT_EQ(run("a.flac WAVE", {"--for", "chdman"}).status, 1);
  EXPECT_THAT(run("a.flac AIFF").out,
              AllOf(HasSubstr("[not-of-its-type]"), HasSubstr("Decode it")));
  expectNoSecondSheet("a.flac WAVE");
}

TEST_F(AudioFilesTest, NamedByAnotherTypeAreGivenTheirOwn) {
  write("a.wav", SF_FORMAT_WAV | kStereo16);
  EXPECT_THAT(run("a.wav AIFF").out, HasSubstr("\"a.wav\" is no AIFF file. Rule: CDRWIN cue sheet "
                                               "rules. -> It is WAVE: write that."));
  writeFile(m_folder / "raw.wav", std::string(2352, 'x'));
  EXPECT_THAT(run("raw.wav WAVE").out, HasSubstr("write BINARY"));
}

TEST_F(AudioFilesTest, WithADamagedHeaderAreNotCalledReady) {
  write("a.wav", SF_FORMAT_WAV | kStereo16);
  std::string bytes = readFile(m_folder / "a.wav");
  bytes.replace(12, 4, "junk");
  writeFile(m_folder / "a.wav", bytes);
  const ProcessResult result = run("a.wav WAVE");
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.out, HasSubstr("[audio-unreadable]"));
  expectNoSecondSheet("a.wav WAVE");
}

}  // namespace
}  // namespace velmor::check::test
