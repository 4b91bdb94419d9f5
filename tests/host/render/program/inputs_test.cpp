// What goes in arrives in the image.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sndfile.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "tests/host/render/program/program.h"

namespace render_test {
namespace {

using testing::HasSubstr;

struct Container {
  const char* name;
  int format;
};

class Exact : public testing::TestWithParam<Container> {};

TEST_P(Exact, A16BitSourceAtTheDiscsRateIsInTheImageBitByBit) {
  const Scratch folder;
  const std::string input = folder / (std::string("song.") + GetParam().name);
  const std::vector<int16_t> samples = noise(44100 * 5 + 77, 2);
  ASSERT_TRUE(writeAudio(input, GetParam().format, 44100, 2, samples));
  const Ended ended = render({input, "-o", folder / "album.cue"});
  ASSERT_EQ(ended.status, 0) << ended.err;
  EXPECT_TRUE(readFile(folder / "album.bin") == asImage(samples));
  EXPECT_EQ(readFile(folder / "album.cue"),
            "FILE \"album.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n    TITLE \"song\"\r\n"
            "    INDEX 01 00:00:00\r\n");
}

INSTANTIATE_TEST_SUITE_P(Containers, Exact,
                         testing::Values(Container{"wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16},
                                         Container{"aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_16},
                                         Container{"flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16},
                                         Container{"w64", SF_FORMAT_W64 | SF_FORMAT_PCM_16},
                                         Container{"rf64", SF_FORMAT_RF64 | SF_FORMAT_PCM_16},
                                         Container{"caf", SF_FORMAT_CAF | SF_FORMAT_PCM_16},
                                         Container{"au", SF_FORMAT_AU | SF_FORMAT_PCM_16}),
                         [](const auto& container) { return container.param.name; });

TEST(Inputs, LossyOnesArriveWithTheirLength) {
  const Scratch folder;
  const std::vector<int16_t> silence(2 * 44100 * 6);
  ASSERT_TRUE(writeAudio(folder / "a.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS, 44100, 2, silence));
  const bool has_mp3 =
      writeAudio(folder / "b.mp3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III, 44100, 2, silence);
  std::vector<std::string> arguments = {folder / "a.ogg", "-o", folder / "album"};
  if (has_mp3) arguments.insert(arguments.begin() + 1, folder / "b.mp3");
  const Ended ended = render(arguments);
  ASSERT_EQ(ended.status, 0) << ended.err;
  EXPECT_GE(readFile(folder / "album.bin").size(), (has_mp3 ? 12U : 6U) * 176400U);
}

TEST(Inputs, OfAnyKindAreLaidEndToEnd) {
  const Scratch folder;
  const std::vector<int16_t> first = writeWav(folder / "one.wav", 6);
  ASSERT_TRUE(writeAudio(folder / "two.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 96000, 1,
                         noise(96000 * 5, 1)));
  ASSERT_TRUE(writeAudio(folder / "three.aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 22050, 6,
                         noise(22050 * 7, 6)));
  const Ended ended = render(
      {folder / "one.wav", folder / "two.flac", folder / "three.aiff", "-o", folder / "album.cue"});
  ASSERT_EQ(ended.status, 0) << ended.err;
  const std::string image = readFile(folder / "album.bin");
  EXPECT_EQ(image.size(), 18U * 176400U);
  EXPECT_TRUE(image.substr(0, first.size() * 2) == asImage(first).substr(0, first.size() * 2));
  EXPECT_THAT(ended.out, HasSubstr("two.flac: resampled from 96000 Hz"));
  EXPECT_THAT(ended.out, HasSubstr("three.aiff: the first two of 6 channels are used"));
  EXPECT_THAT(readFile(folder / "album.cue"),
              HasSubstr("TITLE \"three\"\r\n    INDEX 01 00:11:00"));
}

TEST(Inputs, AnAlbumOfTenFilesIsTheirSamplesWithSilenceBetween) {
  const Scratch folder;
  const int formats[] = {SF_FORMAT_WAV, SF_FORMAT_FLAC, SF_FORMAT_AIFF, SF_FORMAT_W64,
                         SF_FORMAT_CAF};
  std::vector<std::string> arguments;
  std::vector<int16_t> disc(44100 * 2 * 2);
  std::string starts;
  for (int i = 0; i < 10; ++i) {
    const std::string path = folder / ("song" + std::to_string(i));
    const std::vector<int16_t> samples = noise(44100 * (4 + i), 2, static_cast<unsigned>(i) + 1);
    ASSERT_TRUE(writeAudio(path, formats[i % 5] | SF_FORMAT_PCM_16, 44100, 2, samples));
    arguments.push_back(path);
    starts += std::to_string(disc.size() / 2 / 44100) + " ";
    disc.insert(disc.end(), samples.begin(), samples.end());
    if (i < 9) disc.insert(disc.end(), 44100 * 2 * 2, 0);
  }
  arguments.insert(arguments.end(), {"--disc-leadin", "2000", "--track-leadin", "2000", "--json",
                                     "-o", folder / "album"});
  const Ended ended = render(arguments);
  ASSERT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(ended.err, "");
  EXPECT_TRUE(readFile(folder / "album.bin") == asImage(disc));
  std::string told;
  const nlohmann::json album = nlohmann::json::parse(ended.out);
  for (const nlohmann::json& track : album["tracks"]) {
    told += std::to_string(track["start_sector"].get<int>() / 75) + " ";
  }
  EXPECT_EQ(told, starts);
}

TEST(Inputs, AMonoSourceIsOnBothChannels) {
  const Scratch folder;
  const std::vector<int16_t> samples = noise(44100 * 4, 1);
  ASSERT_TRUE(writeAudio(folder / "m.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 44100, 1, samples));
  ASSERT_EQ(render({folder / "m.wav", "-o", folder / "album.cue"}).status, 0);
  std::vector<int16_t> both;
  for (const int16_t sample : samples) both.insert(both.end(), {sample, sample});
  EXPECT_TRUE(readFile(folder / "album.bin") == asImage(both));
}

TEST(Inputs, TheBlockSizeChangesNothing) {
  const Scratch folder;
  writeWav(folder / "a.wav", 5, 1);
  writeWav(folder / "b.wav", 5, 2);
  for (const char* block : {"1", "7", "1024", "100000"}) {
    const Ended ended =
        render({folder / "a.wav", folder / "b.wav", "--marker", "4.5=x", "--block", block,
                "--track-leadin", "333", "--force", "-o", folder / (std::string("album") + block)});
    ASSERT_EQ(ended.status, 0) << ended.err;
    EXPECT_TRUE(readFile(folder / (std::string("album") + block + ".bin")) ==
                readFile(folder / "album1.bin"))
        << block;
  }
}

TEST(Inputs, SamplesBeyondFullScaleAreSaturated) {
  const Scratch folder;
  std::vector<float> samples(2 * 44100 * 4);
  samples[2 * 44100] = 1.5F;
  samples[2 * 44100 + 1] = -2.0F;
  writeFloatWav(folder / "hot.wav", samples);
  const Ended ended = render({folder / "hot.wav", "-o", folder / "album.cue"});
  ASSERT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(readFile(folder / "album.bin").substr(176400, 4), std::string("\xFF\x7F\x00\x80", 4));
}

TEST(Inputs, ThatClipAreNamedWithTheirWorstPlaceEvenToWhoWantsQuiet) {
  const Scratch folder;
  std::vector<float> samples(2 * 44100 * 5);
  samples[2 * 44100] = 1.5F;
  samples[2 * 44100 * 2 + 1] = -2.0F;
  writeFloatWav(folder / "hot.wav", samples);
  writeFloatWav(folder / "fine.wav", std::vector<float>(2 * 44100 * 5, 1.0F));
  samples[2 * 44100 * 3] = std::numeric_limits<float>::quiet_NaN();
  writeFloatWav(folder / "broken.wav", samples);
  const Ended ended = render({folder / "fine.wav", folder / "hot.wav", folder / "broken.wav",
                              "--quiet", "-o", folder / "album.cue"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "velmor-render: warning: \"" + folder / "hot.wav" +
                           "\" clips: 2 samples beyond full scale, the worst at 0:02.000 of it, "
                           "by 6.0 dB; lower its level and render again\n"
                           "velmor-render: warning: \"" +
                           folder / "broken.wav" +
                           "\" clips: 3 samples beyond full scale, the worst at 0:03.000 of it, "
                           "which is infinite or no number; export it again\n");
  EXPECT_EQ(ended.out, "");
}

TEST(Inputs, SayWhatMakesSixteenBitsOfThem) {
  const Scratch folder;
  writeWav(folder / "a.wav", 4);
  ASSERT_TRUE(writeAudio(folder / "b.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, 44100, 2,
                         noise(44100 * 4, 2)));
  writeFloatWav(folder / "c.wav", std::vector<float>(44100 * 8, 0.3F / 32768.0F));
  ASSERT_TRUE(writeAudio(folder / "d.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16, 48000, 2,
                         noise(48000 * 4, 2)));
  std::vector<std::string> arguments = {
      folder / "a.wav", folder / "b.flac", folder / "c.wav", folder / "d.wav", "-o",
      folder / "album"};
  const auto lineOf = [&](const char* name, const std::string& treatment) {
    return HasSubstr(folder / name + ": " + treatment + "\n");
  };
  const Ended dithered = render(arguments);
  EXPECT_THAT(dithered.out, lineOf("a.wav", "16 bit: exact"));
  EXPECT_THAT(dithered.out, lineOf("b.flac", "all samples fit 16 bit: exact"));
  EXPECT_THAT(dithered.out, lineOf("c.wav", "TPDF dither"));
  EXPECT_THAT(dithered.out, lineOf("d.wav", "resampled from 48000 Hz, TPDF dither"));
  const std::string image = readFile(folder / "album.bin");
  arguments.push_back("--force");
  EXPECT_EQ(render(arguments).status, 0);
  EXPECT_TRUE(readFile(folder / "album.bin") == image) << "the noise is the same every time";
  arguments.push_back("--no-dither");
  const Ended rounded = render(arguments);
  EXPECT_THAT(rounded.out, lineOf("a.wav", "16 bit: exact"));
  EXPECT_THAT(rounded.out, lineOf("b.flac", "rounded from 24 bit"));
  EXPECT_THAT(rounded.out, lineOf("c.wav", "rounded from 32 bit float"));
  EXPECT_THAT(rounded.out, lineOf("d.wav", "resampled from 48000 Hz, rounded"));
  arguments.push_back("--json");
  std::string words;
  const nlohmann::json report = nlohmann::json::parse(render(arguments).out);
  for (const nlohmann::json& input : report["inputs"]) {
    words += input["samples"].get<std::string>() + " ";
  }
  EXPECT_EQ(words, "exact rounded rounded rounded ");
}

TEST(Inputs, WhatCannotBeReadIsNamed) {
  const Scratch folder;
  writeFile(folder / "text.wav", "this is no audio");
  const std::vector<std::pair<std::string, std::string>> cases = {
      {folder / "missing.wav", "missing.wav"},
      {folder / "text.wav", "text.wav"},
      {folder / "", ""}};
  for (const auto& [input, name] : cases) {
    const Ended ended = render({input, "-o", folder / "album.cue"});
    EXPECT_EQ(ended.status, 1) << input;
    EXPECT_THAT(ended.err, HasSubstr("velmor-render: "));
    EXPECT_THAT(ended.err, HasSubstr(name));
  }
  EXPECT_EQ(folder.names(), (std::vector<std::string>{"text.wav"}));
}

TEST(Inputs, OfAFormatThatIsNotReadAreReadOnceTheAdviceIsFollowed) {
  if (!isInstalled("ffmpeg")) GTEST_SKIP() << "there is no ffmpeg";
  const Scratch folder;
  const std::vector<int16_t> samples = writeWav(folder / "song.wav", 5);
  ASSERT_EQ(run("ffmpeg",
                {"-v", "error", "-i", folder / "song.wav", "-c:a", "alac", folder / "song two.m4a"})
                .status,
            0);
  const Ended refused = render({folder / "song two.m4a", "-o", folder / "album"});
  EXPECT_EQ(refused.status, 1);
  const std::string begin = "decode it first: ";
  const size_t at = refused.err.find(begin);
  ASSERT_NE(at, std::string::npos) << refused.err;
  ASSERT_EQ(run("sh", {"-c", refused.err.substr(at + begin.size())}).status, 0);
  EXPECT_EQ(render({folder / "song two.wav", "-o", folder / "album"}).status, 0);
  EXPECT_TRUE(readFile(folder / "album.bin") == asImage(samples)) << "the very samples";
}

TEST(Inputs, MemoryDoesNotGrowWithTheirLength) {
  if (VELMOR_SANITIZED) GTEST_SKIP() << "the sanitizer's own memory grows";
  const Scratch folder;
  writeSparseWav(folder / "short.wav", 60);
  writeSparseWav(folder / "long.wav", 20 * 60);
  const Ended brief = render({folder / "short.wav", "-o", folder / "a"});
  const Ended lengthy = render({folder / "long.wav", "-o", folder / "b"});
  ASSERT_EQ(lengthy.status, 0) << lengthy.err;
  EXPECT_LT(lengthy.peak_kilobytes, brief.peak_kilobytes + 4096);
  EXPECT_LT(lengthy.peak_kilobytes, 32 * 1024);
}

}  // namespace
}  // namespace render_test
