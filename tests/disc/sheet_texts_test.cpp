#include "disc/sheet/sheet_texts.h"

#include <gtest/gtest.h>

#include "disc/failure.h"
#include "disc/sheet/sheet_parser.h"

namespace velmor::disc::test {
namespace {

constexpr const char* kSheetOfTwoTracks =
    "REM \"made here\"\r\n"
    "TITLE \"Night Drive\"\r\n"
    "PERFORMER \"The Lanterns\"\r\n"
    "CATALOG \"0731452345622\"\r\n"
    "FILE \"night.bin\" BINARY\r\n"
    "  TRACK 01 AUDIO\r\n"
    "    TITLE \"Intro\"\r\n"
    "    PERFORMER \"Ana\"\r\n"
    "    INDEX 00 00:00:00\r\n"
    "    INDEX 01 00:02:00\r\n"
    "  TRACK 02 AUDIO\r\n"
    "    SONGWRITER \"Bo\"\r\n"
    "    ISRC \"USABC0500001\"\r\n"
    "    INDEX 01 03:05:37\r\n";

SheetTexts textsIn(std::string_view sheet) {
  return textsOf(parseSheet(sheet));
}

TEST(SheetTexts, DiscAndTracksKeepTheirOwn) {
  const SheetTexts texts = textsIn(kSheetOfTwoTracks);
  EXPECT_EQ(texts.disc.title, "Night Drive");
  EXPECT_EQ(texts.disc.performer, "The Lanterns");
  EXPECT_EQ(texts.disc.songwriter, "");
  EXPECT_EQ(texts.catalog, "0731452345622");
  ASSERT_EQ(texts.tracks.size(), 2U);
  EXPECT_EQ(texts.tracks[0].texts.title, "Intro");
  EXPECT_EQ(texts.tracks[0].texts.performer, "Ana");
  EXPECT_EQ(texts.tracks[0].isrc, "");
  EXPECT_EQ(texts.tracks[1].texts.title, "");
  EXPECT_EQ(texts.tracks[1].texts.songwriter, "Bo");
  EXPECT_EQ(texts.tracks[1].isrc, "USABC0500001");
}

struct Line {
  const char* line;
  const char* title;
};
class TitleLine : public ::testing::TestWithParam<Line> {};

TEST_P(TitleLine, YieldsItsValue) {
  EXPECT_EQ(textsIn(GetParam().line).disc.title, GetParam().title);
}

INSTANTIATE_TEST_SUITE_P(Shapes, TitleLine,
                         ::testing::Values(Line{"TITLE \"A\"\r\n", "A"}, Line{"TITLE \"A\"", "A"},
                                           Line{"TITLE \"Say \"Go\" now\"\r\n", "Say \"Go\" now"},
                                           Line{"TITLE \" A \"\r\n", " A "}, Line{"TITLE A\n", "A"},
                                           Line{"title \"A\"\n", "A"}, Line{"TITLE \"\"\r\n", ""},
                                           Line{"TITLE \"A\r\n", "A"}, Line{"TITLE\r\n", ""},
                                           Line{"TITLE \"\r\n", ""},
                                           Line{"\xEF\xBB\xBFTITLE \"A\"\r\n", "A"},
                                           Line{"TITLE \"a\\\"\r\n", "a\\"},
                                           Line{"TITLE \"A\"\r\nTITLE \"B\"\r\n", "A"}));

TEST(SheetTexts, ALineThatWasCutRunsIntoTheNextAndIsToldFromIt) {
  const std::string cut = "TITLE \"" + std::string(4095 - 7, 'x');
  const SheetTexts texts = textsIn(cut + "PERFORMER \"Ana\"\r\n  TRACK 01 AUDIO\r\n");
  EXPECT_EQ(texts.disc.title, std::string(4095 - 7, 'x'));
  EXPECT_EQ(texts.disc.performer, "Ana");
  EXPECT_EQ(texts.tracks.size(), 1U);
}

TEST(SheetTexts, ALineOfJustTheLongestLengthIsWhole) {
  const std::string value(4095 - 10, 'x');
  const SheetTexts texts = textsIn("TITLE \"" + value + "\"\r\nPERFORMER \"Ana\"\r\n");
  EXPECT_EQ(texts.disc.title, value);
  EXPECT_EQ(texts.disc.performer, "Ana");
}

TEST(SheetTexts, AnEmptySheetHasNothing) {
  EXPECT_TRUE(textsIn("").tracks.empty());
  EXPECT_TRUE(textsIn("\r\n\r\n").tracks.empty());
}

TEST(SheetTexts, AMissingSheetIsRefusedByName) {
  EXPECT_THROW(readSheetTexts("/nowhere/album.cue"), Failure);
}

}  // namespace
}  // namespace velmor::disc::test
