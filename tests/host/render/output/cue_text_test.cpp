#include "host/render/output/cue_text.h"

#include <gtest/gtest.h>

#include "tests/host/render/input/sound_files.h"

namespace velmor::render {
namespace {

CueText read(const std::string& text) {
  const test::Folder folder;
  return readCueText(folder.write("disc.cue", text));
}

const std::string kSheet =
    "TITLE \"Disc\"\r\nPERFORMER \"The Lanterns\"\r\nFILE \"disc.bin\" BINARY\r\n"
    "  TRACK 01 AUDIO\r\n    TITLE \"One\"\r\n    PERFORMER \"A \"B\" C\"\r\n"
    "    INDEX 00 00:00:00\r\n    INDEX 01 00:02:00\r\n"
    "  TRACK 02 AUDIO\r\n    SONGWRITER \"Bo\"\r\n    ISRC \"USABC2600001\"\r\n"
    "    TITLE \"\"\r\n    INDEX 01 101:00:74\r\n";

TEST(CueTextTest, HasTheTextsOfEveryTrack) {
  const CueText sheet = read(kSheet);
  ASSERT_EQ(sheet.tracks.size(), 2U);
  EXPECT_TRUE(sheet.complete);
  EXPECT_EQ(sheet.tracks[0].title, "One");
  EXPECT_EQ(sheet.tracks[0].performer, "A \"B\" C");
  EXPECT_EQ(sheet.tracks[1].title, "");
  EXPECT_EQ(sheet.tracks[1].songwriter, "Bo");
  EXPECT_EQ(sheet.tracks[1].isrc, "USABC2600001");
}

TEST(CueTextTest, IsCompleteOnlyWithTheLastTracksIndexAndItsLineEnd) {
  for (size_t length = 0; length < kSheet.size(); ++length) {
    const CueText cut = read(kSheet.substr(0, length));
    const bool at_track_1s_end = kSheet.compare(length, 9, "  TRACK 0") == 0 && length > 100;
    EXPECT_EQ(cut.complete, at_track_1s_end) << "cut to " << length;
    EXPECT_LE(cut.tracks.size(), at_track_1s_end ? 1U : 2U);
  }
  EXPECT_FALSE(read(kSheet + "junk").complete);
  EXPECT_TRUE(readCueText("/nowhere/disc.cue").tracks.empty());
}

}  // namespace
}  // namespace velmor::render
