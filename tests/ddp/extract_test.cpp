// Sets taken apart.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ddp/set_folder.h"

namespace velmor::ddp::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Extraction : public testing::Test {
 protected:
  Extraction() { m_sheets.write("set"); }
  std::string read(const std::string& name) const { return readFile(m_sheets.folder / name); }
  SheetFolder m_sheets;
};

TEST_F(Extraction, GivesTheImageAndAPlainSheetBack) {
  const auto ended = m_sheets.run({"extract", "set", "-o", "out.cue"});
  ASSERT_EQ(ended.status, 0) << ended.all;
  EXPECT_EQ(read("out.bin"), countingSectors(1500));
  EXPECT_EQ(read("out.cue"),
            "CATALOG 0731452345622\r\nTITLE \"Night Drive\"\r\nPERFORMER \"The Lanterns\"\r\n"
            "FILE \"out.bin\" BINARY\r\n"
            "  TRACK 01 AUDIO\r\n    TITLE \"Headlights\"\r\n    PERFORMER \"Ana\"\r\n"
            "    FLAGS PRE\r\n    ISRC USABC2600001\r\n"
            "    INDEX 01 00:00:00\r\n    INDEX 02 00:05:00\r\n"
            "  TRACK 02 AUDIO\r\n    TITLE \"Toll Road, which is a good deal longer\"\r\n"
            "    COMPOSER \"Someone\"\r\n    FLAGS DCP 4CH\r\n    ISRC USABC2600002\r\n"
            "    INDEX 00 00:08:00\r\n    INDEX 01 00:10:00\r\n");
}

TEST_F(Extraction, KeepsAPregapThatSounds) {
  writeFile(m_sheets.folder / "b.cue",
            "FILE \"a.bin\" BINARY\nTRACK 01 AUDIO\nINDEX 00 00:00:00\nINDEX 01 00:02:00\n");
  m_sheets.write("sounding", "b.cue");
  ASSERT_EQ(m_sheets.run({"extract", "sounding", "-o", "out.cue"}).status, 0);
  EXPECT_EQ(read("out.bin"), countingSectors(1500));
  EXPECT_THAT(read("out.cue"), HasSubstr("INDEX 00 00:00:00\r\n    INDEX 01 00:02:00"));
}

TEST_F(Extraction, KeepsTheMasterIdentifierForTheNextSet) {
  SetOptions options;
  options.master_id = "Night \"Drive\" 7";
  m_sheets.write("named", "a.cue", options);
  ASSERT_EQ(m_sheets.run({"extract", "named", "-o", "out.cue"}).status, 0);
  m_sheets.write("again", "out.cue");
  EXPECT_TRUE(sameFiles(m_sheets.folder / "named", m_sheets.folder / "again"));
}

TEST_F(Extraction, LeavesAMasterIdentifierOutThatWouldTearTheSheet) {
  m_sheets.patch("set/DDPID", 38, "m\"\nTITLE \"not mine");
  m_sheets.dropChecksums("set");
  const auto ended = m_sheets.run({"extract", "set", "-o", "out.cue"});
  ASSERT_EQ(ended.status, 0) << ended.all;
  EXPECT_THAT(ended.out, HasSubstr("changed: the master identifier is left out"));
  EXPECT_THAT(read("out.cue"), Not(HasSubstr("not mine")));
  EXPECT_THAT(m_sheets.run({"check", "set"}).out,
              HasSubstr("warning DDPID [master-id] the master identifier \"m\"?TITLE \"not mine\" "
                        "is not printable ASCII"));
}

TEST_F(Extraction, NeedsANameForTheSheet) {
  fs::create_directory(m_sheets.folder / "out");
  const auto ended = m_sheets.run({"extract", "set", "-o", "out/"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.err, HasSubstr("has no usable file name; give one like album.cue with -o"));
  EXPECT_THAT(namesIn(m_sheets.folder / "out"), IsEmpty());
}

TEST_F(Extraction, GivesAWavForEachTrack) {
  const auto ended = m_sheets.run({"extract", "set", "--tracks", "songs"});
  ASSERT_EQ(ended.status, 0) << ended.all;
  EXPECT_THAT(namesIn(m_sheets.folder / "songs"),
              ElementsAre("01 Headlights.wav", "02 Toll Road, which is a good deal longer.wav"));
  const std::string image = countingSectors(1500);
  const size_t middle = size_t{750} * 2352;
  EXPECT_EQ(read("songs/01 Headlights.wav"), test_kit::wavFile(image.substr(0, middle)));
  EXPECT_EQ(read("songs/02 Toll Road, which is a good deal longer.wav"),
            test_kit::wavFile(image.substr(middle)));
}

TEST_F(Extraction, GivesWhatSoundsBeforeTrack1AFileOfItsOwn) {
  writeFile(m_sheets.folder / "b.cue",
            "FILE \"a.bin\" BINARY\nTRACK 01 AUDIO\nTITLE \"a/b: \\c\"\nINDEX 00 00:00:00\n"
            "INDEX 01 00:02:00\n");
  m_sheets.write("sounding", "b.cue");
  ASSERT_EQ(m_sheets.run({"extract", "sounding", "--tracks", "songs"}).status, 0);
  EXPECT_THAT(namesIn(m_sheets.folder / "songs"), ElementsAre("00.wav", "01 a_b_ _c.wav"));
  EXPECT_EQ(read("songs/00.wav"), test_kit::wavFile(countingSectors(1500).substr(0, 150 * 2352)));
}

TEST_F(Extraction, ReplacesNothingUnasked) {
  writeFile(m_sheets.folder / "out.bin", "old");
  EXPECT_EQ(m_sheets.run({"extract", "set", "-o", "out.cue"}).status, 1);
  EXPECT_EQ(read("out.bin"), "old");
  EXPECT_FALSE(fs::exists(m_sheets.folder / "out.cue"));
  EXPECT_EQ(m_sheets.run({"extract", "set", "-o", "out.cue", "--force"}).status, 0);
  EXPECT_NE(read("out.bin"), "old");
  fs::create_directory(m_sheets.folder / "songs");
  writeFile(m_sheets.folder / "songs/mine.wav", "mine");
  EXPECT_EQ(m_sheets.run({"extract", "set", "--tracks", "songs"}).status, 1);
  EXPECT_THAT(namesIn(m_sheets.folder / "songs"), ElementsAre("mine.wav"));
  EXPECT_EQ(m_sheets.run({"extract", "set", "--tracks", "songs", "--force"}).status, 0);
  EXPECT_EQ(read("songs/mine.wav"), "mine");
}

TEST_F(Extraction, NeverWritesOverTheSet) {
  writeFile(m_sheets.folder / "set/map", "x");
  const auto ended = m_sheets.run({"extract", "set", "-o", "set/DDPID", "--force"});
  EXPECT_EQ(ended.status, 0);  // it became DDPID.cue and DDPID.bin
  EXPECT_TRUE(m_sheets.check("set").ready());
}

TEST_F(Extraction, TakesNothingFromASetWithErrors) {
  m_sheets.patch("set/IMAGE.DAT", 1000, "x");
  const auto ended = m_sheets.run({"extract", "set", "-o", "out.cue"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.out, HasSubstr("[check-sum]"));
  EXPECT_FALSE(fs::exists(m_sheets.folder / "out.cue"));
  EXPECT_FALSE(fs::exists(m_sheets.folder / "out.bin"));
}

}  // namespace
}  // namespace velmor::ddp::test
