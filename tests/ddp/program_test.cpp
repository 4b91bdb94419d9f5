// The program as a process: options, exit status, what is there afterwards.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <thread>

#include "disc/version.h"
#include "tests/ddp/set_folder.h"

namespace velmor::ddp::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(Program, ExitsWith0Or1Or2) {
  const SheetFolder sheets;
  EXPECT_EQ(sheets.run({"write", "a.cue", "-o", "set"}).status, 0);
  EXPECT_EQ(sheets.run({"check", "set"}).status, 0);
  sheets.patch("set/SD", 4, "x");
  EXPECT_EQ(sheets.run({"check", "set"}).status, 1);
  EXPECT_EQ(sheets.run({"check", "none"}).status, 2);
  EXPECT_EQ(sheets.run({"check", "a.cue"}).status, 2);
  EXPECT_EQ(sheets.run({"write", "none.cue", "-o", "other"}).status, 2);
  EXPECT_EQ(sheets.run({"write", "a.cue"}).status, 2);
  EXPECT_EQ(sheets.run({"extract", "set"}).status, 2);
  EXPECT_EQ(sheets.run({"extract", "set", "-o", "a", "--tracks", "b"}).status, 2);
  EXPECT_EQ(sheets.run({}).status, 2);
  EXPECT_EQ(sheets.run({"burn"}).status, 2);
  EXPECT_EQ(sheets.run({"--help"}).status, 0);
  EXPECT_EQ(sheets.run({"--version"}).out, std::string("velmor-ddp ") + disc::kVersion + '\n');
}

TEST(Program, PrintsTracksThenFindingsThenTheVerdict) {
  const SheetFolder sheets;
  sheets.write("set");
  sheets.dropChecksums("set");
  EXPECT_EQ(sheets.run({"check", "set"}).out,
            "The Lanterns: Night Drive\nUPC/EAN 0731452345622\n"
            "  #  pregap    start     length    ISRC          flags       performer: title\n"
            "  1  00:00:00  00:02:00  00:10:00  USABC2600001  PRE         Ana: Headlights\n"
            "     index 02 at 00:07:00\n"
            "  2  00:10:00  00:12:00  00:10:00  USABC2600002  DCP 4CH     "
            "Toll Road, which is a good deal longer\n"
            "     composer: Someone\n"
            " AA            00:22:00\n\n"
            "warning [no-check-sums] there is neither CHECKSUM.MD5 nor CHECKSUM.TXT. -> Without "
            "check sums nothing tells whether the set is as it was made: ask for them.\n"
            "set: ready, 0 errors, 1 warning, 0 notes\n");
}

TEST(Program, PrintsTheSameAsOneJsonObject) {
  const SheetFolder sheets;
  sheets.write("set");
  sheets.patch("set/SD", size_t{3} * 64 + 6, "03");
  const auto json = nlohmann::json::parse(sheets.run({"check", "set", "--json"}).out);
  EXPECT_EQ(json["schema"], 1);
  EXPECT_EQ(json["ready"], false);
  EXPECT_EQ(json["catalogue"], "0731452345622");
  EXPECT_EQ(json["texts"]["title"], "Night Drive");
  EXPECT_EQ(json["tracks"][1]["indices"][0]["sector"], 750);
  EXPECT_EQ(json["tracks"][1]["flags"], "DCP 4CH");
  EXPECT_EQ(json["files"].size(), 5U);
  EXPECT_EQ(json["findings"][0]["file"], "SD");
}

TEST(Program, TakesAMasterIdentifierOfFortyEightPrintableCharacters) {
  const SheetFolder sheets;
  const std::string longest(48, 'm');
  EXPECT_EQ(sheets.run({"write", "a.cue", "-o", "set", "--master-id", longest}).status, 0);
  EXPECT_EQ(sheets.check("set").identifier.master_id, longest);
  EXPECT_EQ(sheets.check("set").identifier.unknown, "");
  for (const std::string& wrong : {longest + 'm', std::string("\xC3\xA9"), std::string("a\tb")}) {
    const auto ended = sheets.run({"write", "a.cue", "-o", "other", "--master-id", wrong});
    EXPECT_EQ(ended.status, 2);
    EXPECT_THAT(ended.err, HasSubstr("48 printable ASCII characters"));
  }
}

TEST(Program, NamesItsCommandsToWhoeverGivesNone) {
  const SheetFolder sheets;
  EXPECT_EQ(sheets.run({}).err,
            "velmor-ddp: a command is needed: write, check or extract; --help lists the options\n");
  EXPECT_THAT(sheets.run({"burn"}).err, HasSubstr("was not expected: burn;"));
}

TEST(Program, PrintsNoControlCharactersOfANameInItsMessages) {
  const SheetFolder sheets;
  const auto ended = sheets.run({"check", "none\x1B[31m\nat all"});
  EXPECT_EQ(ended.status, 2);
  EXPECT_THAT(ended.err, HasSubstr("the folder \"none?[31m?at all\" cannot be opened"));
}

class Target : public testing::Test {
 protected:
  std::vector<std::string> namesBeside() const { return namesIn(m_sheets.folder.path()); }
  SheetFolder m_sheets;
};

TEST_F(Target, IsANewOrAnEmptyFolder) {
  fs::create_directory(m_sheets.folder / "set");
  EXPECT_EQ(m_sheets.run({"write", "a.cue", "-o", "set/"}).status, 0);
  EXPECT_TRUE(m_sheets.check("set").ready());
  const auto again = m_sheets.run({"write", "a.cue", "-o", "set"});
  EXPECT_EQ(again.status, 1);
  EXPECT_THAT(again.err, HasSubstr("--force"));
  EXPECT_EQ(m_sheets.run({"write", "a.cue", "-o", "a.bin"}).status, 1);
  EXPECT_EQ(m_sheets.run({"write", "a.cue", "-o", "none/set"}).status, 1);
  EXPECT_EQ(m_sheets.run({"write", "a.cue", "-o", ".", "--force"}).status, 1);
  EXPECT_EQ(m_sheets.run({"write", "a.cue", "-o", ".."}).status, 1);
  EXPECT_THAT(namesBeside(), ElementsAre("a.bin", "a.cue", "set"));
}

TEST_F(Target, IsReplacedByForceButForWhatIsOfNoSet) {
  m_sheets.write("set");
  writeFile(m_sheets.folder / "set/notes.txt", "mine");
  const auto ended =
      m_sheets.run({"write", "a.cue", "-o", "set", "--force", "--no-cd-text", "--master-id", "2"});
  EXPECT_EQ(ended.status, 0) << ended.all;
  EXPECT_THAT(namesIn(m_sheets.folder / "set"),
              ElementsAre("CHECKSUM.MD5", "CHECKSUM.TXT", "DDPID", "DDPMS", "IMAGE.DAT", "SD",
                          "notes.txt"));
  EXPECT_EQ(readFile(m_sheets.folder / "set/notes.txt"), "mine");
  EXPECT_EQ(m_sheets.check("set").identifier.master_id, "2");
  EXPECT_THAT(namesBeside(), ElementsAre("a.bin", "a.cue", "set"));
}

TEST_F(Target, WithAFolderInItIsNotReplaced) {
  m_sheets.write("set");
  fs::create_directory(m_sheets.folder / "set/scans");
  EXPECT_EQ(m_sheets.run({"write", "a.cue", "-o", "set", "--force"}).status, 1);
  EXPECT_TRUE(m_sheets.check("set").ready());
}

TEST_F(Target, IsNotThePlaceOfTheAudioThatItIsMadeOf) {
  m_sheets.write("set");
  writeFile(m_sheets.folder / "set/b.cue",
            "FILE \"IMAGE.DAT\" BINARY\nTRACK 01 AUDIO\nINDEX 00 00:00:00\nINDEX 01 00:02:00\n");
  const auto ended = m_sheets.run({"write", "set/b.cue", "-o", "set", "--force"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.err, HasSubstr("would be replaced by it"));
  EXPECT_TRUE(m_sheets.check("set").ready());
}

TEST_F(Target, StaysAsItWasWhenTheDiskIsFull) {
  m_sheets.write("set");
  const std::string before = readFile(m_sheets.folder / "set/CHECKSUM.MD5");
  const auto small_disk = [] {
    // A file beyond the limit fails as on a full disk.
    const rlimit limit{1'000'000, 1'000'000};
    setrlimit(RLIMIT_FSIZE, &limit);
    signal(SIGXFSZ, SIG_IGN);
  };
  for (const char* target : {"new", "set"}) {
    const auto ended = m_sheets.run({"write", "a.cue", "-o", target, "--force"}, small_disk);
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("IMAGE.DAT\" cannot be written: File too large"));
  }
  EXPECT_EQ(readFile(m_sheets.folder / "set/CHECKSUM.MD5"), before);
  EXPECT_TRUE(m_sheets.check("set").ready());
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"extract", "set", "-o", "out.cue"},
        std::vector<std::string>{"extract", "set", "--tracks", "out"}}) {
    EXPECT_EQ(m_sheets.run(arguments, small_disk).status, 1);
  }
  EXPECT_THAT(namesBeside(), ElementsAre("a.bin", "a.cue", "set"));
}

/// Half a gigabyte that takes no room as an image, but does as a set.
class LongWork : public Target, public testing::WithParamInterface<int> {
 protected:
  LongWork() {
    writeFile(m_sheets.folder / "l.cue",
              "FILE \"l.bin\" BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n");
    writeFile(m_sheets.folder / "l.bin", "");
    fs::resize_file(m_sheets.folder / "l.bin", uintmax_t{2352} * 200'000);
  }

  /// Sends the signal once the work is seen to have begun. Work that was done before the signal
  /// came says nothing and is done again.
  test_kit::EndedProcess stopped(int signal_number) {
    test_kit::ProcessOptions options;
    options.folder = m_sheets.folder.path().string();
    test_kit::EndedProcess ended;
    for (int tries = 0; ended.status <= 0 && tries < 50; ++tries) {
      fs::remove_all(m_sheets.folder / "set");
      test_kit::ChildProcess child({VELMOR_DDP, "write", "l.cue", "-o", "set"}, options);
      while (!begun() && !fs::exists(m_sheets.folder / "set")) std::this_thread::yield();
      kill(child.pid(), signal_number);
      ended = child.wait();
    }
    return ended;
  }

 private:
  bool begun() const {
    for (const std::string& name : namesIn(m_sheets.folder.path()))
      if (name.starts_with(".velmor-ddp-") && fs::exists(m_sheets.folder / name / "IMAGE.DAT"))
        return true;
    return false;
  }
};

TEST_P(LongWork, ThatIsInterruptedLeavesNothing) {
  const auto ended = stopped(GetParam());
  EXPECT_EQ(ended.status, 128 + GetParam());
  EXPECT_THAT(ended.err, HasSubstr("interrupted; nothing was written"));
  EXPECT_THAT(namesBeside(), ElementsAre("a.bin", "a.cue", "l.bin", "l.cue"));
}

INSTANTIATE_TEST_SUITE_P(Signals, LongWork, testing::Values(SIGINT, SIGTERM));

class KilledWork : public LongWork {};

TEST_P(KilledWork, LeavesNoSetAndIsCleanedUpAfterByTheNext) {
  EXPECT_EQ(stopped(GetParam()).status, 128 + GetParam());
  EXPECT_FALSE(fs::exists(m_sheets.folder / "set"));
  EXPECT_EQ(namesBeside().size(), 5U);
  const auto next = m_sheets.run({"write", "a.cue", "-o", "set"});
  EXPECT_EQ(next.status, 0);
  EXPECT_THAT(next.err, HasSubstr("which a killed run has left, was removed, "));
  EXPECT_THAT(namesBeside(), ElementsAre("a.bin", "a.cue", "l.bin", "l.cue", "set"));
}

INSTANTIATE_TEST_SUITE_P(Signals, KilledWork, testing::Values(SIGKILL));

}  // namespace
}  // namespace velmor::ddp::test
