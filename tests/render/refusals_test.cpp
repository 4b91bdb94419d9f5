// What the program refuses, and how it says so.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <regex>
#include <set>

#include "tests/render/audio_files.h"
#include "tests/render/program.h"

namespace render_test {
namespace {

using testing::HasSubstr;

class Refusal : public testing::Test {
 protected:
  void SetUp() override { writeWav(input, 6); }
  /// The refusal's sentence; also sees that it is one line and that nothing was left.
  std::string refused(std::vector<std::string> arguments, int status) {
    const std::vector<std::string> before = folder.names();
    const Ended ended = render(std::move(arguments));
    EXPECT_EQ(ended.status, status) << ended.err;
    EXPECT_EQ(ended.err.rfind("velmor-render: ", 0), 0U) << ended.err;
    EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 1) << ended.err;
    EXPECT_EQ(folder.names(), before);
    return ended.err;
  }
  Scratch folder;
  const std::string input = folder / "in.wav";
};

TEST_F(Refusal, WrongUsageEndsWithTwo) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"-o", folder / "a"}, "INPUT"},
      {{input}, "--output"},
      {{input, "-o", folder / "a", "--nonsense"}, "--nonsense"},
      {{input, "-o", folder / "a", "--track-mode", "songs"}, "songs"},
      {{input, "-o", folder / "a", "--track-leadin", "-5"}, "--track-leadin"},
      {{input, "-o", folder / "a", "--block", "0"}, "--block"},
      {{input, "-o", folder / "a", "--marker", "x=y"}, "x"},
      {{input, "-o", folder / "a", "--region", "9-3=y"}, "9-3"},
      {{input, "-o", folder / "a", "--isrc", "USABC2600001"}, "INPUT_NUMBER=CODE"},
      {{input, "-o", folder / "a", "--isrc", "2=USABC2600001"}, "names input 2"},
      {{input, "-o", folder / "a", "--isrc", "1=USABC"}, "is no ISRC"},
      {{input, "-o", folder / "a", "--isrc", "1=USABC2600001", "--isrc", "1=USABC2600002"},
       "twice"},
      {{input, "-o", folder / "a", "--meta", "nothing"}, "KEY=VALUE"},
      {{input, "-o", folder / "a", "--start", "5", "--end", "4"}, "--end"},
      {{input, "-o", folder / "a", "--start", "60"}, "--start"},
  };
  for (const auto& [arguments, words] : cases) {
    EXPECT_THAT(refused(arguments, 2), HasSubstr(words));
  }
}

TEST_F(Refusal, OutputsThatCannotBe) {
  std::filesystem::create_directory(folder / "dir.cue");
  std::filesystem::create_hard_link(input, folder / "linked.bin");
  const std::vector<std::pair<std::string, std::string>> cases = {
      {folder / "no/such/disc.cue", "there is no folder"},
      {folder / "a\"b.cue", "holds a \""},
      {folder / "a\nb.cue", "line break"},
      {folder / "a\\b.cue", "backslash"},
      {folder / "dir.cue", "is a folder"},
      {folder / "linked.cue", "is one of the inputs"},
  };
  for (const auto& [output, words] : cases) {
    EXPECT_THAT(refused({input, "--force", "-o", output}, 1), HasSubstr(words));
  }
}

TEST_F(Refusal, ALabelFileInTheWayOrMissing) {
  writeFile(folder / "labels.bin", "1\t1\tx\n");
  EXPECT_THAT(
      refused({input, "--force", "--labels", folder / "labels.bin", "-o", folder / "labels"}, 1),
      HasSubstr("is one of the inputs"));
  EXPECT_THAT(refused({input, "--labels", folder / "none.txt", "-o", folder / "a"}, 1),
              HasSubstr("none.txt"));
}

TEST_F(Refusal, ModulesThatAreNone) {
  const auto with = [&](const std::string& module) {
    return refused({input, "--module", module, "-o", folder / "a"}, 1);
  };
  EXPECT_THAT(with(folder / "none.so"), HasSubstr("cannot be loaded"));
  EXPECT_THAT(with(VELMOR_REFUSING_MODULE), HasSubstr("another version"));
  EXPECT_THAT(with(VELMOR_IDLE_MODULE), HasSubstr("registers no render format"));
  writeFile(folder / "text.so", "no library");
  EXPECT_THAT(with(folder / "text.so"), HasSubstr("--module"));
}

TEST_F(Refusal, RegionsModeWithoutARegionInTheRange) {
  EXPECT_THAT(refused({input, "--track-mode", "regions", "--region", "1-2=a", "--start", "3", "-o",
                       folder / "a"},
                      1),
              HasSubstr("no region with audio"));
}

TEST_F(Refusal, MoreThan99Tracks) {
  writeSparseWav(folder / "long.wav", 500);
  std::string labels;
  for (int i = 0; i < 100; ++i) labels += std::to_string(i * 5) + "\tx\n";
  writeFile(folder / "labels.txt", labels);
  EXPECT_THAT(
      refused({folder / "long.wav", "--labels", folder / "labels.txt", "-o", folder / "a"}, 1),
      HasSubstr("100 tracks, but a CD holds 99"));
}

TEST(Help, TellsEveryOptionAndSoDoesTheManPage) {
  const Ended help = render({"--help"});
  ASSERT_EQ(help.status, 0);
  const std::string page = readFile(VELMOR_SOURCE_DIR "/docs/velmor-render.1");
  const std::regex option("--([a-z][a-z-]+)");
  std::set<std::string> told;
  for (std::sregex_iterator it(help.out.begin(), help.out.end(), option), end; it != end; ++it) {
    told.insert((*it)[1]);
  }
  EXPECT_GE(told.size(), 24U);
  for (const std::string& name : told) EXPECT_THAT(page, HasSubstr("Fl Fl " + name)) << name;
  const std::regex documented("Fl Fl ([a-z][a-z-]+)");
  for (std::sregex_iterator it(page.begin(), page.end(), documented), end; it != end; ++it) {
    EXPECT_TRUE(told.count((*it)[1])) << (*it)[1];
  }
}

TEST(Help, TheVersionIsTold) {
  const Ended ended = render({"--version"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_TRUE(std::regex_match(ended.out, std::regex("velmor-render [0-9.]+\n"))) << ended.out;
}

}  // namespace
}  // namespace render_test
