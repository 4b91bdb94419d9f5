// What is told of a disc that is done.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <regex>

#include "tests/host/render/program/program.h"

namespace render_test {
namespace {

using nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;

TEST(RenderReport, ListsTracksFilesAndSizesAndNothingElse) {
  const Scratch folder;
  writeWav(folder / "a.wav", 5);
  writeWav(folder / "b.wav", 6);
  const Ended ended = render({folder / "a.wav", folder / "b.wav", "--isrc", "2=USABC2600002",
                              "--marker", "5=PERF=Ana", "--disc-leadin", "2000", "--track-leadin",
                              "2000", "-o", folder / "disc"});
  EXPECT_EQ(ended.err, "");
  EXPECT_EQ(ended.out,
            "  #  start     sector  length      title\n"
            "  1  00:02:00     150  0:07.000    a\n"
            "  2  00:09:00     675  0:06.000    b (Ana)  [USABC2600002]\n"
            "\n" +
                folder / "disc.cue" + ": " + std::to_string(readFile(folder / "disc.cue").size()) +
                " bytes\n" + folder / "disc.bin" + ": 2646000 bytes, 00:15:00 (MM:SS:FF)\n" +
                folder / "a.wav" + " and " + folder / "b.wav" + ": 16 bit: exact\n");
}

TEST(RenderReport, ALeadInOfBrokenFramesStillPutsTheTrackOnItsSector) {
  const Scratch folder;
  writeWav(folder / "a.wav", 5);
  writeWav(folder / "b.wav", 5);
  const Ended ended = render({folder / "a.wav", folder / "b.wav", "--disc-leadin", "13",
                              "--track-leadin", "1501", "--json", "-o", folder / "disc"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const json disc = json::parse(ended.out);
  EXPECT_EQ(disc["tracks"][0]["start_sector"], 1);
  EXPECT_EQ(disc["tracks"][1]["start_sector"], 1 + 375 + 113);
  for (const json& track : disc["tracks"]) EXPECT_EQ(track["starts_inside_sector"], false);
}

TEST(RenderReport, WarningsAndFailuresAreInTheJsonWhateverTheirTexts) {
  const Scratch folder;
  writeWav(folder / "a.wav", 3);
  const Ended done = render({folder / "a.wav", "--title", "\xFF \"x\"", "--meta", "GENRE=1\"",
                             "--json", "-o", folder / "disc"});
  EXPECT_EQ(done.status, 0) << done.err;
  EXPECT_EQ(json::parse(done.out)["warnings"].size(), 5U) << done.out;
  EXPECT_EQ(std::count(done.err.begin(), done.err.end(), '\n'), 5);
  for (const std::vector<std::string>& wrong :
       {std::vector<std::string>{folder / "no\xFF\"such.wav"},
        {folder / "a.wav", "--start", "99"},
        {folder / "a.wav", "--marker", "x"},
        {folder / "a.wav", "--nonsense"},
        {}}) {
    std::vector<std::string> arguments = wrong;
    arguments.insert(arguments.end(), {"--json", "-o", folder / "other"});
    const Ended failed = render(arguments);
    EXPECT_GT(failed.status, 0);
    const json object = json::parse(failed.out, nullptr, false);
    ASSERT_TRUE(object.is_object()) << failed.out;
    EXPECT_EQ(object["schema_version"], 1);
    EXPECT_GT(object["error"].get<std::string>().size(), 10U);
  }
}

TEST(RenderReport, ADiscLongerThanDiscsAreIsSaidBeforeTheRender) {
  const std::pair<int, const char*> cases[] = {
      {74 * 60 + 1, "the disc lasts 74:01:00 (MM:SS:FF), longer than the 74 minutes"},
      {79 * 60 + 58, "the disc lasts 79:58:00 (MM:SS:FF), longer than the 79:57"}};
  for (const auto& [seconds, sentence] : cases) {
    const Scratch folder;
    writeSparseWav(folder / "long.wav", seconds);
    // The warning is what counts, so the render may fail as soon as it begins.
    const Ended ended = render({folder / "long.wav", "-o", folder / "disc"}, [] {
      const rlimit limit{1000000, 1000000};
      setrlimit(RLIMIT_FSIZE, &limit);
    });
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr(sentence));
  }
}

int g_terminal = -1;

/// What a render shows when standard error is a terminal.
std::string onTerminal(const std::vector<std::string>& arguments) {
  int screen = -1;
  if (openpty(&screen, &g_terminal, nullptr, nullptr, nullptr) != 0) return "no terminal";
  EXPECT_EQ(render(arguments, [] { dup2(g_terminal, STDERR_FILENO); }).status, 0);
  close(g_terminal);
  std::string shown;
  char piece[4096];
  for (ssize_t got = 0; (got = read(screen, piece, sizeof(piece))) > 0;) {
    shown.append(piece, static_cast<size_t>(got));
  }
  close(screen);
  return shown;
}

TEST(RenderReport, TheProgressBarGoesWhenTheDiscIsDone) {
  const Scratch folder;
  writeWav(folder / "a.wav", 5);
  const std::string shown = onTerminal({folder / "a.wav", "-o", folder / "disc"});
  const std::regex bar(R"(Rendering \[#*\.*\] +[0-9]+ %  [0-9]+x real time, [0-9:.]+ left)");
  EXPECT_TRUE(std::regex_search(shown, bar)) << shown;
  EXPECT_THAT(shown, EndsWith("\r\033[K"));
  EXPECT_EQ(onTerminal({folder / "a.wav", "--quiet", "--force", "-o", folder / "disc"}), "");
}

TEST(RenderReport, TenThousandLabelsMakeTheTracksThereIsRoomFor) {
  const Scratch folder;
  std::string labels;
  for (int i = 0; i < 10000; ++i) {
    labels += std::to_string(i * 0.05) + "\t" + std::to_string(i * 0.05) + "\tL" +
              std::to_string(i) + "\n";
  }
  writeFile(folder / "labels.txt", labels);
  writeSparseWav(folder / "long.wav", 300);
  const Ended ended = render(
      {folder / "long.wav", "--labels", folder / "labels.txt", "--json", "-o", folder / "disc"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const json disc = json::parse(ended.out);
  ASSERT_EQ(disc["tracks"].size(), 75U);
  EXPECT_EQ(disc["tracks"][74]["title"], "L5920");
  EXPECT_THAT(ended.err, HasSubstr("more make no tracks"));
}

TEST(RenderReport, ATitleOfThousandsOfCharactersDoesNotBreakTheSheet) {
  const Scratch folder;
  writeWav(folder / "a.wav", 5);
  const Ended ended = render({folder / "a.wav", "--marker", "0=" + std::string(9000, 'x'),
                              "--title", std::string(5000, 'y'), "-o", folder / "disc"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  const std::string sheet = readFile(folder / "disc.cue");
  EXPECT_EQ(std::count(sheet.begin(), sheet.end(), '\n'), 5);
  EXPECT_THAT(sheet, EndsWith("x\"\r\n    INDEX 01 00:00:00\r\n"));
}

TEST(RenderReport, CountsTheClippedSamplesThatAreOnTheDisc) {
  const Scratch folder;
  std::vector<float> samples(44100 * 2 * 10, 0.1F);
  for (const size_t second : {0U, 3U, 7U}) samples[second * 88200] = 1.5F;
  samples[4 * 88200 - 2] = -1.5F;  // the last frame of the region
  samples[4 * 88200] = 1.5F;       // and the first behind it
  writeFloatWav(folder / "loud.wav", samples);
  const auto clipped = [&](std::vector<std::string> options) {
    options.insert(options.end(), {folder / "loud.wav", "--json", "--force", "-o", folder / "d"});
    return json::parse(render(options).out)["clipped"];
  };
  EXPECT_EQ(clipped({})["samples"], 5);
  EXPECT_EQ(clipped({})["first_seconds"], 0.0);
  const json loud = clipped({"--start", "1"})["inputs"][0];
  EXPECT_EQ(loud["input"], 1);
  EXPECT_EQ(loud["worst_seconds_in_input"], 3.0) << "in the input, not in the render";
  EXPECT_NEAR(loud["worst_decibels"].get<double>(), 3.52, 0.01);
  const json in_regions = clipped({"--track-mode", "regions", "--region", "2-4=A", "--region",
                                   "4.5-7=B", "--region", "8-10=C"});
  EXPECT_EQ(in_regions["samples"], 2);
  EXPECT_EQ(in_regions["first_seconds"], 3.0);
  EXPECT_EQ(clipped({"--track-mode", "regions", "--region", "1-2=A", "--start", "1"})["samples"],
            0);
}

TEST(RenderReport, DitherTouchesOnlySourcesOfMoreThanSixteenBits) {
  const Scratch folder;
  const auto image = [&](const std::string& input, const char* dither) {
    EXPECT_EQ(render({input, "--dither", dither, "--force", "-o", folder / "disc"}).status, 0);
    return readFile(folder / "disc.bin");
  };
  writeFloatWav(folder / "quiet.wav", std::vector<float>(44100 * 8, 0.3F / 32768.0F));
  EXPECT_EQ(image(folder / "quiet.wav", "none").find_first_not_of('\0'), std::string::npos);
  EXPECT_NE(image(folder / "quiet.wav", "tpdf").find_first_not_of('\0'), std::string::npos);
  const std::vector<int16_t> samples = writeWav(folder / "cd.wav", 4);
  EXPECT_TRUE(image(folder / "cd.wav", "tpdf") == asImage(samples));
}

}  // namespace
}  // namespace render_test
