// The tolerant parser: what other programs write, and what nobody should.

#include "disc/sheet/sheet_parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "tests/check/test_images.h"

namespace velmor::disc::test {
namespace {

const std::string kSheet =
    "REM GENRE Jazz\nPERFORMER \"Ana\"\nTITLE Night Drive\nFILE \"a b.wav\" WAVE\n"
    "  TRACK 01 AUDIO\n    FLAGS DCP PRE\n    ISRC USABC0500001\n    PREGAP 00:02:00\n"
    "    INDEX 01 00:00:00\nFILE c.bin BINARY\n  TRACK 02 AUDIO\n    INDEX 00 00:00:00\n"
    "    INDEX 01 00:01:10\n    POSTGAP 00:00:30\n";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
    text.replace(at, from.size(), to);
  return text;
}

class AnySpelling : public testing::TestWithParam<std::string> {};

TEST_P(AnySpelling, OfASheetIsReadAlike) {
  const Sheet sheet = parseSheet(GetParam());
  EXPECT_TRUE(sheet.problems.empty());
  ASSERT_EQ(sheet.tracks.size(), 2u);
  EXPECT_EQ(sheet.fields.title->bytes, "Night Drive");
  EXPECT_EQ(sheet.fields.performer->bytes, "Ana");
  EXPECT_EQ(sheet.fields.performer->line, 2);
  EXPECT_EQ(sheet.files[0].name.bytes, "a b.wav");
  EXPECT_EQ(sheet.files[0].type, "WAVE");
  EXPECT_EQ(sheet.files[1].name.bytes, "c.bin");
  EXPECT_EQ(sheet.files[1].type, "BINARY");
  EXPECT_EQ(sheet.tracks[0].isrc->bytes, "USABC0500001");
  EXPECT_EQ(sheet.tracks[0].flags->bytes, "DCP PRE");
  EXPECT_EQ(sheet.tracks[0].pregap->sectors(), 150);
  EXPECT_EQ(sheet.tracks[1].index(1)->time.sectors(), 85);
  EXPECT_EQ(sheet.tracks[1].index(1)->file, 1u);
  EXPECT_EQ(sheet.tracks[1].index(1)->line, 13);
  EXPECT_EQ(sheet.tracks[1].postgap->sectors(), 30);
}

INSTANTIATE_TEST_SUITE_P(
    Sheet, AnySpelling,
    testing::Values(kSheet, replaced(kSheet, "\n", "\r\n"), replaced(kSheet, "\n", "\r"),
                    "\xEF\xBB\xBF" + kSheet, kSheet.substr(0, kSheet.size() - 1),
                    replaced(kSheet, "  ", "\t"), replaced(kSheet, "INDEX", "index"),
                    replaced(kSheet, "TRACK", "Track"), replaced(kSheet, "\n", "  \n"),
                    replaced(kSheet, "AUDIO", "audio"),
                    replaced(kSheet, "Night Drive", "\"Night Drive\"")));

TEST(Parser, KeepsAnIndexWithTheFileItStandsIn) {
  const Sheet sheet = parseSheet(
      "FILE a.wav WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 AUDIO\nINDEX 00 00:04:00\n"
      "FILE b.wav WAVE\nINDEX 01 00:00:00\n");
  EXPECT_EQ(sheet.tracks[1].index(0)->file, 0u);
  EXPECT_EQ(sheet.tracks[1].index(1)->file, 1u);
}

struct Bad {
  const char* text;
  SyntaxKind kind;
  int line;
};

class BadLine : public testing::TestWithParam<Bad> {};

TEST_P(BadLine, IsNamedWithItsNumber) {
  const Sheet sheet = parseSheet(GetParam().text);
  ASSERT_FALSE(sheet.problems.empty());
  EXPECT_EQ(sheet.problems[0].kind, GetParam().kind);
  EXPECT_EQ(sheet.problems[0].line, GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    Of, BadLine,
    testing::Values(
        Bad{"REM a\nHELLO world\n", SyntaxKind::kUnknownCommand, 2},
        Bad{"INDEX 01 00:00:00\n", SyntaxKind::kMisplaced, 1},
        Bad{"ISRC X\n", SyntaxKind::kMisplaced, 1},
        Bad{"\n\nTRACK 01 AUDIO\n", SyntaxKind::kMisplaced, 3},
        Bad{"FILE a BINARY\nTRACK xx AUDIO\n", SyntaxKind::kBadNumber, 2},
        Bad{"FILE a BINARY\nTRACK 1 AUDIO\nINDEX 01 00:00\n", SyntaxKind::kBadNumber, 3},
        Bad{"FILE a BINARY\nTRACK 1 AUDIO\nINDEX 01 -1:00:00\n", SyntaxKind::kBadNumber, 3},
        Bad{"FILE a BINARY\nTRACK 1 AUDIO\nINDEX 01 9999999:00:00\n", SyntaxKind::kBadNumber, 3},
        Bad{"TITLE a\nTITLE b\n", SyntaxKind::kRepeated, 2},
        Bad{"TITLE \"a\n", SyntaxKind::kUnclosed, 1},
        Bad{"TITLE \"a\nPERFORMER \"b\"\n", SyntaxKind::kUnclosed, 1},
        Bad{"TITLE \"a\nb\"\n", SyntaxKind::kLineBreak, 1},
        Bad{"FILE \"a.bin BINARY\n", SyntaxKind::kUnclosed, 1},
        Bad{"TITLE \"a\" b\n", SyntaxKind::kTextAfterValue, 1},
        Bad{"FILE \"a.bin\" BINARY b\n", SyntaxKind::kTextAfterValue, 1},
        Bad{"FILE a BINARY\nTRACK 1 AUDIO b\n", SyntaxKind::kTextAfterValue, 2},
        Bad{"FILE a BINARY\nTRACK 1 AUDIO\nPREGAP 00:02:00\nPREGAP 00:02:00\n",
            SyntaxKind::kRepeated, 4},
        Bad{"FILE a BINARY\nTRACK 1 AUDIO\nINDEX 01 00:00:00 x\n", SyntaxKind::kTextAfterValue,
            3}));

TEST(Parser, KnowsWhereSmallLettersAndAMissingLineEndAre) {
  const Sheet small = parseSheet("REM x\nfile a BINARY\nTRACK 01 audio\nindex 01 00:00:00");
  EXPECT_EQ(small.lower_case_file_type, 0);
  EXPECT_TRUE(small.tracks.at(0).lower_case_mode);
  EXPECT_TRUE(small.no_last_line_end);
  const Sheet mode = parseSheet("FILE a Wave\nTRACK 01 Audio\nINDEX 01 00:00:00\r");
  EXPECT_TRUE(mode.tracks.at(0).lower_case_mode);
  EXPECT_EQ(mode.lower_case_file_type, 1);
  EXPECT_FALSE(mode.no_last_line_end);
  EXPECT_FALSE(parseSheet("").no_last_line_end);
  EXPECT_FALSE(parseSheet("FILE a WAVE\nTRACK 01 AUDIO\n").tracks.at(0).lower_case_mode);
}

TEST(Parser, JoinsAValueThatGoesOnOverSeveralLines) {
  EXPECT_EQ(parseSheet("TITLE \"a\nb\nc\"\nPERFORMER x\n").fields.title->bytes, "a b c");
}

TEST(Parser, FindsTheCommandBehindALineCutAt4095Bytes) {
  std::string cut = "TITLE \"" + std::string(5000, 'x');
  cut.resize(4095);
  const Sheet sheet = parseSheet(cut + "PERFORMER \"Ana\"\r\n");
  EXPECT_EQ(sheet.problems.at(0).kind, SyntaxKind::kCutLine);
  EXPECT_EQ(sheet.fields.performer->bytes, "Ana");
}

TEST(Parser, ReadsHugeAndHostileSheetsInTheTimeOfTheirLength) {
  std::string cuts = "TITLE \"" + std::string(4088, 'x');
  std::string all;
  for (int i = 0; i < 1000; ++i) all += cuts;
  EXPECT_EQ(parseSheet(all).problems.size(), kMostProblems);
  std::string unclosed;
  for (int i = 0; i < 300000; ++i) unclosed += "TITLE \"\n";
  EXPECT_GT(parseSheet(unclosed).problems_left_out, 0u);
  std::string tracks = "FILE a BINARY\n";
  for (int i = 0; i < 100000; ++i) tracks += "TRACK 1 AUDIO\nINDEX 1 0:0:0\n";
  EXPECT_EQ(parseSheet(tracks).tracks_in_all, 100000u);
  // A command behind millions of blanks is no line that was cut.
  const Sheet blanks = parseSheet("TITLE \"" + std::string(16 << 20, ' ') + "REM x");
  ASSERT_EQ(blanks.problems.size(), 1u);
  EXPECT_EQ(blanks.problems[0].kind, SyntaxKind::kUnclosed);
  EXPECT_EQ(parseSheet(std::string(1 << 20, '\0')).tracks.size(), 0u);
  EXPECT_EQ(parseSheet(std::string(1 << 20, '"')).tracks.size(), 0u);
}

TEST(Parser, CountsTheTracksThatNoDiscHasRoomForAndKeepsNothingOfThem) {
  std::string text = "FILE a BINARY\n";
  for (size_t i = 0; i < kMostTracksKept; ++i) text += "TRACK 01 AUDIO\nINDEX 01 00:00:00\n";
  text += "TRACK 02 AUDIO\nISRC USABC0500001\nINDEX 02 00:01:00\nTITLE \"x\ny\"\nTRACK 03 AUDIO\n";
  const Sheet sheet = parseSheet(text);
  EXPECT_EQ(sheet.tracks_in_all, kMostTracksKept + 2);
  ASSERT_EQ(sheet.tracks.size(), kMostTracksKept);
  EXPECT_EQ(sheet.tracks.back().indices.size(), 1u);
  EXPECT_FALSE(sheet.tracks.back().isrc);
  EXPECT_FALSE(sheet.tracks.back().fields.title);
}

TEST(Parser, MakesASheetOfAnyBytes) {
  std::mt19937 random(7);
  std::vector<std::string> seeds;
  for (const auto& entry : std::filesystem::directory_iterator(check::test::casesFolder()))
    if (entry.path().extension() == ".cue" && entry.file_size() < 2000)
      seeds.push_back(check::test::readFile(entry.path()));
  ASSERT_GT(seeds.size(), 10u);
  for (int round = 0; round < 4000; ++round) {
    std::string text = seeds[random() % seeds.size()];
    for (unsigned change = random() % 8; change > 0; --change) {
      const size_t at = random() % text.size();
      switch (random() % 4) {
        case 0:
          text[at] = static_cast<char>(random());
          break;
        case 1:
          text.erase(at, random() % 20);
          break;
        case 2:
          text.insert(at, text.substr(random() % text.size(), random() % 40));
          break;
        default:
          text.insert(at, 1, "\"\\\r\n\t:\0"[random() % 7]);
          break;
      }
      if (text.empty()) text = " ";
    }
    const Sheet sheet = parseSheet(text);
    EXPECT_LE(sheet.tracks.size(), text.size());
  }
}

}  // namespace
}  // namespace velmor::disc::test
