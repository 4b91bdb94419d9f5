// What velmor-render writes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "tests/render/render_program.h"

namespace velmor::render::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class ImageProcess : public testing::Test {
 protected:
  std::vector<std::string> sheetLines() const {
    return linesOf(contentsOf(m_folder.path("disc.cue")));
  }
  std::string image() const { return contentsOf(m_folder.path("disc.bin")); }
  Outcome render(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"-o", m_folder.path("disc.cue")});
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome;
  }

  Folder m_folder;
};

TEST_F(ImageProcess, SixteenBitAudioOfEveryContainerArrivesBitByBit) {
  const std::vector<int16_t> samples = music(44100 * 5 + 7);
  const std::string expected = imageOf(samples);
  const std::pair<const char*, int> containers[] = {
      {"song.wav", SF_FORMAT_WAV},
      {"song.aiff", SF_FORMAT_AIFF},
      {"song.flac", SF_FORMAT_FLAC},
      {"song.w64", SF_FORMAT_W64},
      {"song.rf64", SF_FORMAT_RF64},
      {"song.caf", SF_FORMAT_CAF},
      {"song.au", SF_FORMAT_AU},
      {"song.wavex", SF_FORMAT_WAVEX},
      {"big.rifx", SF_FORMAT_WAV | SF_ENDIAN_BIG},
      {"small.aifc", SF_FORMAT_AIFF | SF_ENDIAN_LITTLE}};
  for (const auto& [name, container] : containers) {
    SCOPED_TRACE(name);
    const std::string input = m_folder.path(name);
    writeShorts(input, {container | SF_FORMAT_PCM_16, 44100, 2}, samples);
    const Outcome outcome = render({input, "--force"});
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(image() == expected);
  }
}

TEST_F(ImageProcess, LossyInputsHaveTheirLengthAndSoundLikeTheirSource) {
  const std::pair<const char*, int> formats[] = {
      {"song.ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS},
      {"song.mp3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III}};
  constexpr int64_t kFrames = 44100 * 6;
  std::vector<double> tone(kFrames * 2);
  for (size_t i = 0; i < tone.size(); ++i) {
    tone[i] = 0.5 * std::sin(static_cast<double>(i / 2) * 0.0627);
  }
  for (const auto& [name, format] : formats) {
    SCOPED_TRACE(name);
    SF_INFO info{0, 44100, 2, format, 0, 0};
    if (!sf_format_check(&info)) {
      std::puts((std::string(name) + ": this libsndfile does not write it").c_str());
      continue;
    }
    writeDoubles(m_folder.path(name), {format, 44100, 2}, tone);
    render({m_folder.path(name), "--force"});
    const std::string bytes = image();
    EXPECT_EQ(bytes.size() % 2352, 0U);
    EXPECT_NEAR(static_cast<double>(bytes.size()) / 4, kFrames, 3000);
    double power = 0.0;
    const auto* const samples = reinterpret_cast<const int16_t*>(bytes.data());
    for (int i = 44100; i < 88200; ++i) power += std::pow(samples[i] / 32768.0, 2);
    EXPECT_NEAR(power / 44100, 0.125, 0.01);
  }
}

TEST_F(ImageProcess, InputsOfDifferentKindsLieEndToEnd) {
  const std::vector<int16_t> first = music(44100 * 5);
  writeShorts(m_folder.path("a.flac"), {SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 44100, 2}, first);
  std::vector<double> mono(48000 * 5, 0.25);
  writeDoubles(m_folder.path("b.wav"), {SF_FORMAT_WAV | SF_FORMAT_PCM_24, 48000, 1}, mono);
  std::vector<int16_t> surround;
  for (int16_t frame = 0; frame < 30000; ++frame) {
    for (int16_t channel = 0; channel < 6; ++channel) {
      surround.push_back(channel < 2 ? static_cast<int16_t>(frame + channel) : int16_t{12345});
    }
  }
  writeShorts(m_folder.path("c.aiff"), {SF_FORMAT_AIFF | SF_FORMAT_PCM_16, 44100, 6}, surround);
  const Outcome outcome =
      render({m_folder.path("a.flac"), m_folder.path("b.wav"), m_folder.path("c.aiff")});
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("b.wav: resampled from 48000 Hz"),
                                 HasSubstr("c.aiff: the first two of 6 channels are used"),
                                 Not(HasSubstr("a.flac: "))));
  const std::string bytes = image();
  const auto* const samples = reinterpret_cast<const int16_t*>(bytes.data());
  ASSERT_EQ(bytes.size(), (44100U * 10 + 30000 + 587) / 588 * 2352);
  EXPECT_EQ(bytes.compare(0, 44100 * 20, imageOf(first), 0, 44100 * 20), 0);
  EXPECT_EQ(samples[44100 * 15], 8192) << "mono goes to both channels";
  EXPECT_EQ(samples[44100 * 15 + 1], 8192);
  for (int frame = 0; frame < 30000; ++frame) {
    ASSERT_EQ(samples[44100 * 20 + frame * 2], frame);
    ASSERT_EQ(samples[44100 * 20 + frame * 2 + 1], frame + 1);
  }
}

TEST_F(ImageProcess, TheBlockSizeDoesNotChangeTheDisc) {
  const std::string input = writeSong(m_folder, "song.wav", 14);
  const std::vector<std::string> options = {input,      "--marker", "5.123=B",
                                            "--marker", "9.77=C",   "--track-leadin",
                                            "1501",     "--force",  "--quiet"};
  render(options);
  const std::string sheet = contentsOf(m_folder.path("disc.cue"));
  const std::string bytes = image();
  for (const char* const block : {"1", "587", "16385", "1048576"}) {
    std::vector<std::string> again = options;
    again.insert(again.end(), {"--block", block});
    render(again);
    EXPECT_EQ(contentsOf(m_folder.path("disc.cue")), sheet) << block;
    EXPECT_TRUE(image() == bytes) << block;
  }
}

TEST_F(ImageProcess, EveryTextAndCodeReachesTheSheet) {
  const std::string a = writeSong(m_folder, "a.wav", 5);
  const std::string b = writeSong(m_folder, "b.wav", 6);
  const Outcome outcome = render({a,
                                  b,
                                  "--title",
                                  "Night \"Drive\"",
                                  "--performer",
                                  "The Lanterns",
                                  "--songwriter",
                                  "Bo",
                                  "--catalog",
                                  "0731452345622",
                                  "--comment",
                                  "mastered",
                                  "--isrc",
                                  "1=us-abc-26-00001",
                                  "--isrc",
                                  "2=USABC2600002",
                                  "--marker",
                                  "5=WRIT=Cy",
                                  "--disc-leadin",
                                  "2000",
                                  "--track-leadin",
                                  "2000",
                                  "--meta",
                                  "GENRE=Folk"});
  EXPECT_THAT(
      sheetLines(),
      ElementsAre("REM \"mastered\"", "TITLE \"Night 'Drive'\"", "PERFORMER \"The Lanterns\"",
                  "SONGWRITER \"Bo\"", "CATALOG \"0731452345622\"", "FILE \"disc.bin\" BINARY",
                  "  TRACK 01 AUDIO", "    TITLE \"a\"", "    ISRC \"USABC2600001\"",
                  "    INDEX 00 00:00:00", "    INDEX 01 00:02:00", "  TRACK 02 AUDIO",
                  "    TITLE \"b\"", "    ISRC \"USABC2600002\"", "    SONGWRITER \"Cy\"",
                  "    INDEX 00 00:07:00", "    INDEX 01 00:09:00"));
  EXPECT_EQ(image().size(), 15U * 176400);
  EXPECT_THAT(outcome.err, HasSubstr("\"Night 'Drive'\" is written instead"));
}

TEST_F(ImageProcess, ALabelTrackAndEmbeddedCuesCutTheDisc) {
  const std::string labels =
      m_folder.write("labels.txt", "0.0\t0.0\tOne\n5.0\t5.0\tTwo\n10.0\t14.0\tRegion\n");
  const std::string body = little32(1) + little32(44100 * 10) + "data" + little32(0) + little32(0) +
                           little32(44100 * 10);
  const std::string input = m_folder.write(
      "song.wav", riffFile(formatChunk() + riffChunk("cue ", little32(1) + body) +
                           riffChunk("LIST", "adtl" + label(1, "Cue")) + dataChunk(44100 * 16)));
  render({input, "--labels", labels, "--quiet"});
  EXPECT_THAT(sheetLines(),
              ElementsAre("FILE \"disc.bin\" BINARY", "  TRACK 01 AUDIO", "    TITLE \"One\"",
                          "    INDEX 01 00:00:00", "  TRACK 02 AUDIO", "    TITLE \"Two\"",
                          "    INDEX 01 00:05:00", "  TRACK 03 AUDIO", "    TITLE \"Cue\"",
                          "    INDEX 01 00:10:00"));
  render({input, "--no-embedded-markers", "--force", "--quiet"});
  EXPECT_THAT(sheetLines(), ElementsAre("FILE \"disc.bin\" BINARY", "  TRACK 01 AUDIO",
                                        "    TITLE \"song\"", "    INDEX 01 00:00:00"));
}

TEST_F(ImageProcess, RegionsModeKeepsOnlyRegions) {
  const std::vector<int16_t> samples = music(44100 * 20);
  writeShorts(m_folder.path("song.wav"), {}, samples);
  render({m_folder.path("song.wav"), "--track-mode", "regions", "--region", "1-6=R1", "--region",
          "00:10:00-00:15:00=R2", "--isrc", "1=USABC2600001"});
  EXPECT_THAT(sheetLines(),
              ElementsAre("FILE \"disc.bin\" BINARY", "  TRACK 01 AUDIO", "    TITLE \"R1\"",
                          "    ISRC \"USABC2600001\"", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
                          "    TITLE \"R2\"", "    INDEX 01 00:05:00"));
  const std::string bytes = image();
  const std::string source = imageOf(samples);
  ASSERT_EQ(bytes.size(), 1764000U);
  EXPECT_EQ(bytes.compare(0, 882000, source, 176400, 882000), 0);
  EXPECT_EQ(bytes.compare(882000, 882000, source, 1764000, 882000), 0);
}

TEST_F(ImageProcess, HashAndOneTrackModesCutAsTheyShould) {
  const std::string input = writeSong(m_folder, "song.wav", 16);
  render({input, "--hash-markers-only", "--marker", "5=plain", "--marker", "00:10.000=#Ten",
          "--quiet"});
  EXPECT_THAT(sheetLines(),
              ElementsAre("FILE \"disc.bin\" BINARY", "  TRACK 01 AUDIO", "    TITLE \"song\"",
                          "    INDEX 01 00:00:00", "  TRACK 02 AUDIO", "    TITLE \"Ten\"",
                          "    INDEX 01 00:10:00"));
  render({input, "--track-mode", "one", "--marker", "5=plain", "--quiet", "--force"});
  EXPECT_THAT(sheetLines(),
              ElementsAre("FILE \"disc.bin\" BINARY", "  TRACK 01 AUDIO", "    INDEX 01 00:00:00"));
}

TEST_F(ImageProcess, ARangeIsRenderedToTheFrame) {
  const std::vector<int16_t> samples = music(44100 * 20);
  writeShorts(m_folder.path("song.wav"), {}, samples);
  render({m_folder.path("song.wav"), "--start", "3.5", "--end", "00:12:30", "--marker", "2=Named",
          "--marker", "8=Second", "--quiet"});
  const std::string bytes = image();
  const std::string source = imageOf(samples);
  ASSERT_EQ(bytes.size(), 2352U * (8 * 75 + 68));
  EXPECT_EQ(bytes.compare(0, 176400 * 89 / 10, source, 176400 * 35 / 10, 176400 * 89 / 10), 0);
  EXPECT_THAT(sheetLines(),
              ElementsAre("FILE \"disc.bin\" BINARY", "  TRACK 01 AUDIO", "    TITLE \"Named\"",
                          "    INDEX 01 00:00:00", "  TRACK 02 AUDIO", "    TITLE \"Second\"",
                          "    INDEX 01 00:04:37"));
}

TEST_F(ImageProcess, DitherChangesOnlySourcesOfMoreThanSixteenBits) {
  const std::vector<double> quiet(44100 * 10, 0.3 / 32768.0);
  writeDoubles(m_folder.path("deep.wav"), {SF_FORMAT_WAV | SF_FORMAT_PCM_24, 44100, 2}, quiet);
  render({m_folder.path("deep.wav")});
  EXPECT_EQ(image().find_first_not_of('\0'), std::string::npos) << "without dither it rounds away";
  render({m_folder.path("deep.wav"), "--dither", "tpdf", "--force"});
  EXPECT_NE(image().find_first_not_of('\0'), std::string::npos);
  const std::vector<int16_t> samples = music(44100 * 4);
  writeShorts(m_folder.path("cd.wav"), {}, samples);
  render({m_folder.path("cd.wav"), "--dither", "tpdf", "--force"});
  EXPECT_TRUE(image() == imageOf(samples));
}

TEST_F(ImageProcess, TenThousandLabelsAreReadAndRefusedOrRendered) {
  std::string labels;
  for (int i = 0; i < 10000; ++i) {
    const std::string at = std::to_string(i * 0.05);
    labels.append(at).append("\t").append(at).append("\tL").append(std::to_string(i)).append("\n");
  }
  const std::string file = m_folder.write("labels.txt", labels);
  const std::string wav = writeSparseWav(m_folder, "long.wav", 300);
  const Outcome outcome = render({wav, "--labels", file, "--json"});
  EXPECT_THAT(outcome.err, HasSubstr("more make no tracks"));
  EXPECT_THAT(outcome.out, HasSubstr("\"number\": 75"));
  EXPECT_EQ(outcome.out.find("\"number\": 76"), std::string::npos);
  const std::string longer = writeSparseWav(m_folder, "longer.wav", 500);
  const Outcome refused =
      run({longer, "--labels", file, "-o", m_folder.path("more.cue"), "--quiet"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, HasSubstr("make 125 tracks, but a CD holds 99"));
  EXPECT_FALSE(std::filesystem::exists(m_folder.path("more.cue")));
}

TEST_F(ImageProcess, ATitleOfThousandsOfCharactersDoesNotBreakTheSheet) {
  const std::string input = writeSong(m_folder, "song.wav", 5);
  render({input, "--marker", "0=" + std::string(9000, 'x'), "--title", std::string(5000, 'y')});
  EXPECT_EQ(sheetLines().size(), 5U);
}

}  // namespace
}  // namespace velmor::render::test
