// What the program refuses, and how it says so.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <set>

#include "disc/failure.h"
#include "tests/host/render/program/program.h"
#include "tests/kit/as_nobody.h"

namespace render_test {
namespace {

using testing::HasSubstr;

/// The form of every message: the program's name, then a clause that begins in lower case (or with
/// a name or an abbreviation), ends without a full stop, and has names in double quotes.
bool hasMessageForm(const std::string& line) {
  static const std::regex kForm("velmor-render: (?!warning)(?![A-Z][a-z])[^\n]*[^.\n]\n");
  return std::regex_match(line, kForm) && line.find(" '") == std::string::npos;
}

class Failure : public testing::Test {
 protected:
  void SetUp() override { writeWav(m_input, 6); }
  /// The refusal's message; also sees that it is one line of the usual form and that nothing was
  /// left.
  std::string refused(const std::vector<std::string>& arguments, int status) {
    const std::vector<std::string> before = m_folder.names();
    const Ended ended = render(arguments);
    EXPECT_EQ(ended.status, status) << ended.err;
    EXPECT_TRUE(hasMessageForm(ended.err)) << ended.err;
    EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 1) << ended.err;
    EXPECT_EQ(m_folder.names(), before);
    return ended.err;
  }
  Scratch m_folder;
  const std::string m_input = m_folder / "in.wav";
};

TEST_F(Failure, WrongUsageEndsWithTwo) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"-o", m_folder / "a"}, "INPUT"},
      {{m_input}, "--output"},
      {{m_input, "-o", m_folder / "a", "--nonsense"},
       "there is no option --nonsense; --help lists the options"},
      {{m_input, "-o", m_folder / "a", "--lables", m_folder / "x"},
       "there is no option --lables; did you mean --labels?"},
      {{m_input, "-o", m_folder / "a", "--tilte=X"},
       "there is no option --tilte; did you mean --title?"},
      {{m_input, "--ouput", m_folder / "a"}, "there is no option --ouput; did you mean --output?"},
      {{m_input, "-o", m_folder / "a", "-titel", "X"}, "did you mean --title?"},
      {{m_input, "-o", m_folder / "a", "--track-mode", "songs"}, "songs"},
      {{m_input, "-o", m_folder / "a", "--track-leadin", "-5"}, "--track-leadin"},
      {{m_input, "-o", m_folder / "a", "--track-leadin", "abc"},
       "--track-leadin: \"abc\" is no number of milliseconds; give"},
      {{m_input, "-o", m_folder / "a", "--disc-leadin", "4799987"},
       "--disc-leadin: \"4799987\" is not from 0 to 4799986; give a silence that fits on a disc"},
      {{m_input, "-o", m_folder / "a", "--burn", "--speed", "0"},
       "--speed: \"0\" is no speed; give one such as 8"},
      {{m_input, "-o", m_folder / "a", "--block", "0"}, "--block"},
      {{m_input, "-o", m_folder / "a", "--marker", "x=y"}, "x"},
      {{m_input, "-o", m_folder / "a", "--region", "9-3=y"}, "9-3"},
      {{m_input, "-o", m_folder / "a", "--isrc", "USABC2600001"}, "INPUT_NUMBER=CODE"},
      {{m_input, "-o", m_folder / "a", "--isrc", "2=USABC2600001"}, "names input 2"},
      {{m_input, "-o", m_folder / "a", "--isrc", "1=USABC"}, "is no ISRC"},
      {{m_input, "-o", m_folder / "a", "--isrc", "1=USABC2600001", "--isrc", "1=USABC2600002"},
       "twice"},
      {{m_input, "-o", m_folder / "a", "--meta", "nothing"}, "KEY=VALUE"},
      {{m_input, "-o", m_folder / "a", "--start", "5", "--end", "4"}, "--end"},
      {{m_input, "-o", m_folder / "a", "--start", "60"}, "--start"},
      {{m_input, "-o", m_folder / "a", "--eject"}, "add --burn"},
      {{m_input, "-o", m_folder / "a", "--burn", "--dry-run", "--copies", "2"}, "--dry-run"},
  };
  for (const auto& [arguments, words] : cases) {
    EXPECT_THAT(refused(arguments, 2), HasSubstr(words));
  }
}

TEST_F(Failure, OutputsThatCannotBe) {
  std::filesystem::create_directory(m_folder / "dir.cue");
  std::filesystem::create_hard_link(m_input, m_folder / "linked.bin");
  std::filesystem::create_symlink(m_input, m_folder / "pointed.cue");
  ASSERT_EQ(mkfifo((m_folder / "pipe.cue").c_str(), 0600), 0);
  const std::vector<std::pair<std::string, std::string>> cases = {
      {m_folder / "no/such/disc.cue", "there is no folder"},
      {m_folder / "a\"b.cue", "holds a \""},
      {m_folder / "a\nb.cue", "line break"},
      {m_folder / "a\\b.cue", "backslash"},
      {m_folder / "dir.cue", "is a folder"},
      {m_folder / "linked.cue", "is one of the inputs"},
      {m_folder / "pointed.cue", "is one of the inputs"},
      {m_folder / "pipe.cue", "is no regular file"},
      {m_folder / "", "no usable file name"},
      {"/proc/disc.cue", "nothing can be written"},
  };
  for (const auto& [output, words] : cases) {
    EXPECT_THAT(refused({m_input, "--force", "-o", output}, 1), HasSubstr(words));
  }
}

TEST_F(Failure, InputsThatAreNoFiles) {
  std::filesystem::create_directory(m_folder / "folder.wav");
  writeFile(m_folder / "empty.wav", "");
  ASSERT_EQ(mkfifo((m_folder / "pipe.wav").c_str(), 0600), 0);
  for (const char* const name : {"folder.wav", "empty.wav", "pipe.wav"}) {
    EXPECT_THAT(refused({m_input, m_folder / name, "-o", m_folder / "a"}, 1), HasSubstr(name));
  }
}

TEST_F(Failure, AnInputOrAFolderWithoutPermission) {
  namespace fs = std::filesystem;
  fs::permissions(m_folder / ".", fs::perms::owner_all | fs::perms::others_exec);
  if (render({"--version"}, test_kit::becomeNobody).status != 0) {
    GTEST_SKIP() << "another user cannot be, or cannot run the program";
  }
  const auto refused_as_nobody = [&] {
    const Ended ended = render({m_input, "-o", m_folder / "a"}, test_kit::becomeNobody);
    EXPECT_EQ(ended.status, 1);
    return ended.err;
  };
  EXPECT_THAT(refused_as_nobody(), HasSubstr("nothing can be written to the folder"));
  fs::permissions(m_folder / ".", fs::perms::all);
  fs::permissions(m_input, fs::perms::owner_read);
  EXPECT_THAT(refused_as_nobody(), HasSubstr(m_input));
  EXPECT_EQ(m_folder.names(), std::vector<std::string>{"in.wav"});
}

TEST_F(Failure, ALabelFileInTheWayOrMissing) {
  writeFile(m_folder / "labels.bin", "1\t1\tx\n");
  EXPECT_THAT(
      refused({m_input, "--force", "--labels", m_folder / "labels.bin", "-o", m_folder / "labels"},
              1),
      HasSubstr("is one of the inputs"));
  EXPECT_THAT(refused({m_input, "--labels", m_folder / "none.txt", "-o", m_folder / "a"}, 1),
              HasSubstr("none.txt"));
}

TEST_F(Failure, ModulesThatAreNone) {
  const auto with = [&](const std::string& module) {
    return refused({m_input, "--module", module, "-o", m_folder / "a"}, 1);
  };
  EXPECT_THAT(with(m_folder / "none.so"), HasSubstr("cannot be loaded"));
  EXPECT_THAT(with(VELMOR_REFUSING_MODULE), HasSubstr("another version"));
  EXPECT_THAT(with(VELMOR_IDLE_MODULE), HasSubstr("registers no render format"));
  EXPECT_THAT(with(VELMOR_DEMANDING_MODULE), HasSubstr("misses a function"));
  EXPECT_THAT(with(VELMOR_PLAIN_LIBRARY), HasSubstr("is no module of this kind"));
  writeFile(m_folder / "text.so", "no library");
  EXPECT_THAT(with(m_folder / "text.so"), HasSubstr("--module"));
}

TEST_F(Failure, RegionsModeWithoutARegionInTheRange) {
  EXPECT_THAT(refused({m_input, "--track-mode", "regions", "--region", "1-2=a", "--start", "3",
                       "-o", m_folder / "a"},
                      1),
              HasSubstr("no region with audio"));
}

TEST_F(Failure, AWrongCatalogueNumber) {
  const std::pair<const char*, const char*> cases[] = {
      {"073145234562", "has 12 digits"},
      {"0731452345620", "check digit 0 where 2 is right"},
      {"07314523456x2", "holds more than digits"}};
  for (const auto& [number, words] : cases) {
    EXPECT_THAT(refused({m_input, "--catalog", number, "-o", m_folder / "a"}, 1), HasSubstr(words));
  }
}

TEST_F(Failure, ADiscThatIsTooLong) {
  writeSparseWav(m_folder / "long.wav", 4801);
  EXPECT_THAT(refused({m_folder / "long.wav", "-o", m_folder / "a"}, 1),
              HasSubstr("80:01:00 (MM:SS:FF), longer than any 80-minute disc"));
}

TEST_F(Failure, ACueSheetGivenAsLabels) {
  writeFile(m_folder / "album.cue",
            "FILE \"a.bin\" BINARY\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n");
  EXPECT_THAT(refused({m_input, "--labels", m_folder / "album.cue", "-o", m_folder / "a"}, 1),
              HasSubstr("is a cue sheet and no label track"));
}

TEST_F(Failure, MoreThan99Tracks) {
  writeSparseWav(m_folder / "long.wav", 500);
  std::string labels;
  for (int i = 0; i < 100; ++i) labels += std::to_string(i * 5) + "\tx\n";
  writeFile(m_folder / "labels.txt", labels);
  EXPECT_THAT(
      refused({m_folder / "long.wav", "--labels", m_folder / "labels.txt", "-o", m_folder / "a"},
              1),
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
  EXPECT_GE(told.size(), 26U);
  EXPECT_EQ(help.out.find("{false}"), std::string::npos) << "the parser's notes are no help";
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
