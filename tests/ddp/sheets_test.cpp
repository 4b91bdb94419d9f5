// What becomes of the audio and the texts of sheets of every kind.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ddp/set_folder.h"

namespace velmor::ddp::test {
namespace {

using testing::ElementsAre;

std::string silence(int64_t sectors) {
  return std::string(static_cast<size_t>(sectors) * 2352, '\0');
}

std::vector<int64_t> timesOf(const CheckedSet& set, size_t track) {
  std::vector<int64_t> times;
  for (const IndexPoint& index : set.layout.tracks[track].indices) {
    times.push_back(index.number);
    times.push_back(index.sector);
  }
  return times;
}

std::string swapped(std::string bytes) {
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
  return bytes;
}

TEST(SetsOfSheets, HaveTheFilesOneBehindTheOther) {
  const SheetFolder sheets(
      "FILE \"a.bin\" BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
      "FILE \"b.bin\" MOTOROLA\nTRACK 02 AUDIO\nINDEX 01 00:00:00\n"
      "FILE \"c.wav\" WAVE\nTRACK 03 AUDIO\nINDEX 01 00:00:00\n");
  const std::string b = countingSectors(310);
  const std::string c = countingFrames(320 * 588 + 7);
  writeFile(sheets.folder / "b.bin", swapped(b));
  writeFile(sheets.folder / "c.wav", test_kit::wavFile(c));
  sheets.write("set");
  const std::string end(static_cast<size_t>(588 - 7) * 4, '\0');
  EXPECT_EQ(readFile(sheets.folder / "set/IMAGE.DAT"),
            silence(150) + countingSectors(1500) + b + c + end);
  const CheckedSet set = sheets.check("set");
  EXPECT_TRUE(set.ready());
  EXPECT_THAT(timesOf(set, 1), ElementsAre(1, 1650));
  EXPECT_THAT(timesOf(set, 2), ElementsAre(1, 1960));
}

TEST(SetsOfSheets, HavePregapsAndPostgapsAsSilence) {
  const SheetFolder sheets(
      "FILE \"a.bin\" BINARY\n"
      "TRACK 01 AUDIO\nPREGAP 00:03:00\nINDEX 01 00:00:00\nPOSTGAP 00:00:10\n"
      "TRACK 02 AUDIO\nPREGAP 00:00:20\nINDEX 01 00:10:00\nPOSTGAP 00:00:30\n");
  sheets.write("set");
  const std::string image = countingSectors(1500);
  const size_t middle = size_t{750} * 2352;
  EXPECT_EQ(
      readFile(sheets.folder / "set/IMAGE.DAT"),
      silence(225) + image.substr(0, middle) + silence(30) + image.substr(middle) + silence(30));
  const CheckedSet set = sheets.check("set");
  EXPECT_TRUE(set.ready());
  EXPECT_THAT(timesOf(set, 0), ElementsAre(0, 0, 1, 225));
  EXPECT_THAT(timesOf(set, 1), ElementsAre(0, 985, 1, 1005));
}

TEST(SetsOfSheets, KeepThePauseInOneFileBeforeATrackOfTheNext) {
  const SheetFolder sheets(
      "FILE \"a.bin\" BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
      "TRACK 02 AUDIO\nINDEX 00 00:18:00\nFILE \"b.bin\" BINARY\nINDEX 01 00:00:00\n");
  writeFile(sheets.folder / "b.bin", countingSectors(300));
  sheets.write("set");
  EXPECT_THAT(timesOf(sheets.check("set"), 1), ElementsAre(0, 1500, 1, 1650));
}

TEST(SetsOfSheets, TellEachCharacterThatCdTextLacks) {
  const SheetFolder sheets(
      "TITLE \"Łódź à la carte\"\nFILE \"a.bin\" BINARY\nTRACK 01 AUDIO\n"
      "ARRANGER \"Æ\"\nINDEX 01 00:00:00\n");
  const auto ended = sheets.run({"write", "a.cue", "-o", "set"});
  EXPECT_EQ(ended.status, 0) << ended.all;
  EXPECT_THAT(ended.out,
              testing::HasSubstr("changed: CD-TEXT knows ISO 8859-1 only: \"Ł\", \"ź\""));
  const CheckedSet set = sheets.check("set");
  EXPECT_EQ(set.texts.block(disc::TextKind::kTitle).disc,
            "L\xF3"
            "dz \xE0 la carte");
  EXPECT_THAT(set.texts.block(disc::TextKind::kArranger).tracks, ElementsAre("\xC6"));
}

TEST(SetsOfSheets, LeaveATextEmptyWhereTheSheetHasNone) {
  const SheetFolder sheets;
  sheets.write("set");
  const CheckedSet set = sheets.check("set");
  EXPECT_THAT(set.texts.block(disc::TextKind::kPerformer).tracks, ElementsAre("Ana", ""));
  EXPECT_THAT(set.texts.block(disc::TextKind::kComposer).tracks, ElementsAre("", "Someone"));
}

TEST(SetsOfSheets, HaveNoTextsWithoutThem) {
  const SheetFolder sheets;
  SetOptions options;
  options.cd_text = false;
  sheets.write("set", "a.cue", options);
  EXPECT_THAT(namesIn(sheets.folder / "set"),
              ElementsAre("CHECKSUM.MD5", "CHECKSUM.TXT", "DDPID", "DDPMS", "IMAGE.DAT", "SD"));
}

TEST(SetsOfSheets, StartWhereTheRenderSays) {
  const SheetFolder sheets;
  SetOptions options;
  options.exact_starts = {{0}, {751 * 588 + 3}};
  sheets.write("set", "a.cue", options);
  const CheckedSet set = sheets.check("set");
  EXPECT_THAT(timesOf(set, 0), ElementsAre(0, 0, 1, 150, 2, 525));
  EXPECT_THAT(timesOf(set, 1), ElementsAre(0, 751, 1, 901));
}

}  // namespace
}  // namespace velmor::ddp::test
