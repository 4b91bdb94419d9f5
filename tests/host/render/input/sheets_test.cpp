// Cue sheets as inputs: what they say becomes marks and tags.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disc/sheet/sheet_parser.h"
#include "host/render/input/sheets/audio_source.h"
#include "host/render/input/sheets/flac_cuesheet.h"
#include "host/render/input/sheets/sheet_marks.h"
#include "host/render/input/silences.h"
#include "tests/host/render/input/sound_files.h"

namespace velmor::render::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// "seconds name" of each mark.
std::vector<std::string> shownMarks(const std::vector<Mark>& marks) {
  std::vector<std::string> shown;
  for (const Mark& mark : marks) {
    shown.push_back(std::to_string(mark.start).substr(0, 5) + " " + mark.name);
  }
  return shown;
}

SheetMarks marksOfLines(const std::string& lines) {
  return marksOfSheet(disc::parseSheet(lines), "\"x.cue\"");
}

TEST(SheetInput, TracksTextsAndCodesBecomeMarksAndTags) {
  const SheetMarks found = marksOfLines(
      "REM GENRE \"Art Rock\"\nREM DATE 1998\nREM COMMENT x\nCATALOG 0-731452-345622\n"
      "TITLE \"Disc\"\nPERFORMER \"Band\"\nSONGWRITER \"Pen\"\nFILE \"a.wav\" WAVE\n"
      "  TRACK 01 AUDIO\n    TITLE \"One\"\n    INDEX 01 00:00:00\n"
      "  TRACK 02 AUDIO\n    PERFORMER \"Guest\"\n    SONGWRITER \"Poet\"\n    ISRC "
      "us-abc-26-00002\n"
      "    INDEX 01 01:02:15\n");
  ASSERT_EQ(found.of_files.size(), 1U);
  EXPECT_THAT(shownMarks(found.of_files[0].marks),
              ElementsAre("0.000 One", "62.20 Track 02", "62.20 PERF=Guest", "62.20 WRIT=Poet",
                          "62.20 ISRC=USABC2600002"));
  EXPECT_EQ(found.of_files[0].marks[1].given_by, "track 2 of \"x.cue\"");
  EXPECT_EQ(found.disc.album, "Disc");
  EXPECT_EQ(found.disc.artist, "Band");
  EXPECT_EQ(found.disc.songwriter, "Pen");
  EXPECT_EQ(found.disc.catalogue, "0731452345622");
  EXPECT_EQ(found.disc.genre, "Art Rock");
  EXPECT_EQ(found.disc.date, "1998");
  EXPECT_THAT(found.warnings, IsEmpty());
}

TEST(SheetInput, EachFileHasTheMarksOfTheTracksThatBeginInIt) {
  const SheetMarks found = marksOfLines(
      "FILE \"a.wav\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
      "  TRACK 02 AUDIO\n    INDEX 00 00:08:00\nFILE \"b.wav\" WAVE\n    INDEX 01 00:00:00\n"
      "  TRACK 03 AUDIO\n    INDEX 01 00:05:00\n");
  ASSERT_EQ(found.of_files.size(), 2U);
  EXPECT_THAT(shownMarks(found.of_files[0].marks), ElementsAre("0.000 Track 01"));
  EXPECT_THAT(shownMarks(found.of_files[1].marks), ElementsAre("0.000 Track 02", "5.000 Track 03"));
}

TEST(SheetInput, WhatMarksCannotSayIsTold) {
  const SheetMarks found = marksOfLines(
      "CATALOG 1234567890123\nFILE \"a.wav\" WAVE\n"
      "  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
      "  TRACK 02 AUDIO\n    FLAGS PRE\n    INDEX 01 00:10:00\n    INDEX 02 00:12:00\n");
  EXPECT_EQ(found.disc.catalogue, "");
  EXPECT_THAT(found.warnings,
              ElementsAre(HasSubstr("the catalogue number \"1234567890123\" of \"x.cue\""),
                          "INDEX 02 and above of track 2 of \"x.cue\" are left out",
                          "the FLAGS of track 2 of \"x.cue\" are left out"));
}

/// "frame+frames" of each silence, in sectors.
std::vector<std::string> shownSilences(const FileMarks& file) {
  std::vector<std::string> shown;
  for (const Silence& silence : file.silences) {
    shown.push_back((silence.at == kAtTheEnd ? "end" : std::to_string(silence.at / 588)) + "+" +
                    std::to_string(silence.frames / 588));
  }
  return shown;
}

TEST(SheetInput, IsToldByItsName) {
  EXPECT_TRUE(isSheetName("a.cue"));
  EXPECT_TRUE(isSheetName("A.CUE"));
  EXPECT_FALSE(isSheetName(".cue"));
  EXPECT_FALSE(isSheetName("a.cues"));
}

TEST(SheetInput, PregapsAndPostgapsAreSilencesBeforeTheirTracksPauses) {
  const SheetMarks found = marksOfLines(
      "FILE \"a.wav\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n    POSTGAP 00:01:00\n"
      "  TRACK 02 AUDIO\n    PREGAP 00:02:00\n    INDEX 00 00:08:00\n    INDEX 01 00:10:00\n"
      "  TRACK 03 AUDIO\n    PREGAP 00:02:00\n    INDEX 01 00:20:00\n    POSTGAP 00:00:30\n");
  const FileMarks& file = found.of_files[0];
  EXPECT_THAT(shownSilences(file), ElementsAre("600+75", "600+150", "1500+150", "end+30"));
  EXPECT_THAT(shownMarks(file.marks),
              ElementsAre("0.000 Track 01", "13.00 Track 02", "25.00 Track 03"));
  EXPECT_THAT(file.pauses, ElementsAre(9.0, 23.0));
  EXPECT_THAT(found.warnings, IsEmpty());
}

TEST(SheetInput, PregapsAndPostgapsMayBeAsLongAsTheTimesOfADisc) {
  const SheetMarks found = marksOfLines(
      "FILE \"a.wav\" WAVE\n  TRACK 01 AUDIO\n    PREGAP 99:59:74\n    INDEX 01 00:00:00\n"
      "    POSTGAP 99:59:74\n");
  EXPECT_THAT(shownSilences(found.of_files[0]), ElementsAre("0+449999", "end+449999"));
  EXPECT_THAT(found.warnings, IsEmpty());
}

TEST(SheetInput, APregapOrPostgapThatIsNoTimeIsToldAndLeftOut) {
  const SheetMarks found = marksOfLines(
      "FILE \"a.wav\" WAVE\n  TRACK 01 AUDIO\n    PREGAP 1:2\n    INDEX 01 00:00:00\n"
      "    POSTGAP 9999999:00:00\n"
      "  TRACK 02 AUDIO\n    INDEX 01 00:10:00\n");
  EXPECT_THAT(shownSilences(found.of_files[0]), IsEmpty());
  EXPECT_THAT(found.warnings,
              ElementsAre("the PREGAP of track 1 and the POSTGAP of track 1 of \"x.cue\" are no "
                          "times (MM:SS:FF) and are left out"));
}

TEST(SheetInput, APauseMayEndTheFileBeforeItsTrack) {
  const SheetMarks found = marksOfLines(
      "FILE \"a.wav\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
      "  TRACK 02 AUDIO\n    PREGAP 00:01:00\n    INDEX 00 00:08:00\n"
      "FILE \"b.wav\" WAVE\n    INDEX 01 00:00:00\n  TRACK 03 AUDIO\n    INDEX 00 00:05:00\n"
      "    INDEX 01 00:05:00\n");
  EXPECT_THAT(found.of_files[0].pauses, ElementsAre(8.0));
  EXPECT_THAT(shownSilences(found.of_files[0]), ElementsAre("600+75"));
  EXPECT_THAT(found.of_files[1].pauses, IsEmpty()) << "a pause of no length is none";
  EXPECT_THAT(shownMarks(found.of_files[1].marks), ElementsAre("0.000 Track 02", "5.000 Track 03"));
}

TEST(SheetInput, ThePauseOfItsFirstTrackLiesBehindTheMark) {
  for (const char* const begin :
       {"INDEX 00 00:00:00\n    INDEX 01 00:01:15", "INDEX 01 00:01:15",
        "PREGAP 00:01:00\n    INDEX 01 00:00:15", "PREGAP 00:01:15\n    INDEX 01 00:00:00"}) {
    const SheetMarks found =
        marksOfLines("FILE \"a.wav\" WAVE\n  TRACK 01 AUDIO\n    " + std::string(begin) + "\n");
    const Mark& mark = found.of_files[0].marks[0];
    EXPECT_EQ(mark.start, 0.0) << begin;
    EXPECT_DOUBLE_EQ(mark.pause_behind, 1.2) << begin;
    EXPECT_THAT(found.of_files[0].pauses, IsEmpty()) << begin;
  }
}

TEST(SheetInput, ASheetOfNoAudioDiscIsRefused) {
  const std::pair<const char*, const char*> cases[] = {
      {"TITLE \"x\"\n", "\"x.cue\" has no tracks"},
      {"FILE \"a.bin\" BINARY\n  TRACK 01 MODE1/2352\n    INDEX 01 00:00:00\n",
       "\"x.cue\" has a data track, track 1"},
      {"FILE \"a.bin\" BINARY\n  TRACK 01 AUDIO\n    INDEX 00 00:00:00\n",
       "\"x.cue\" has no INDEX 01 in track 1"},
      {"TRACK 01 AUDIO\n    INDEX 01 00:00:00\n", "\"x.cue\" "},
      {"FILE \"a.wav\" WAVE\n  TRACK 01 AUDIO\n    PREGAP 99999:00:00\n    INDEX 01 00:00:00\n",
       "\"x.cue\" has a PREGAP of 99999:00:00 (MM:SS:FF) in track 1, but the times of a disc end "
       "at "
       "99:59:74; shorten it"},
      {"FILE \"a.wav\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
       "  TRACK 02 AUDIO\n    PREGAP 100:00:00\n    INDEX 01 00:10:00\n",
       "has a PREGAP of 100:00:00 (MM:SS:FF) in track 2"},
      {"FILE \"a.wav\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n    POSTGAP 100:00:00\n",
       "has a POSTGAP of 100:00:00 (MM:SS:FF) in track 1"},
  };
  for (const auto& [lines, words] : cases) {
    EXPECT_THAT(errorOf([&, text = lines] { marksOfLines(text); }), HasSubstr(words));
  }
}

TEST(SheetInput, NamesFilesBesideTheSheetWithTheirByteOrder) {
  const Folder folder;
  const std::string sheet =
      folder.write("x.CUE",
                   "FILE \"a.bin\" BINARY\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
                   "FILE \"b.mot\" MOTOROLA\n  TRACK 02 AUDIO\n    INDEX 01 00:00:00\n"
                   "FILE \"c.wav\" WAVE\n  TRACK 03 AUDIO\n    INDEX 01 00:00:00\n");
  const std::vector<AudioSource> sources = sourcesOf({"first.wav", sheet, "last.cue.wav"});
  ASSERT_EQ(sources.size(), 5U);
  EXPECT_EQ(sources[0].path, "first.wav");
  EXPECT_FALSE(sources[0].sheet);
  EXPECT_EQ(sources[1].path, folder.path("a.bin"));
  EXPECT_EQ(sources[1].raw, disc::RawSamples::kLittleEndian);
  EXPECT_EQ(sources[2].raw, disc::RawSamples::kBigEndian);
  EXPECT_EQ(sources[3].raw, disc::RawSamples::kNone);
  EXPECT_EQ(sources[3].number, 2);
  EXPECT_EQ(sources[4].number, 3);
  EXPECT_THAT(errorOf([&] { sourcesOf({folder.path("no.cue")}); }), HasSubstr("no such file"));
}

TEST(RawInput, HoldsTheSamplesOfADiscInEitherByteOrder) {
  const Folder folder;
  const std::string little("\x01\x02\x03\x84\xff\x7f\x00\x80", 8);
  const std::string big("\x02\x01\x84\x03\x7f\xff\x80\x00", 8);
  for (const auto& [bytes, order] :
       {std::pair{little, disc::RawSamples::kLittleEndian}, {big, disc::RawSamples::kBigEndian}}) {
    const auto input = AudioInput::open(folder.write("a.bin", bytes), Dither::kTpdf, order);
    EXPECT_EQ(input->info().format, "CD image, 16 bit");
    EXPECT_EQ(input->info().to_16_bits, To16Bits::kExact);
    const Stereo read = readAll(*input, 10);
    ASSERT_EQ(read.left.size(), 2U);
    EXPECT_EQ(discSample(read.left[0]), 0x0201);
    EXPECT_EQ(discSample(read.right[0]), 0x8403 - 0x10000);
    EXPECT_EQ(discSample(read.left[1]), 32767);
    EXPECT_EQ(discSample(read.right[1]), -32768);
  }
  EXPECT_THAT(errorOf([&] {
                AudioInput::open(folder.write("a.bin", ""), Dither::kTpdf,
                                 disc::RawSamples::kLittleEndian);
              }),
              HasSubstr("is empty"));
}

std::string big64(uint64_t value) {
  return big32(static_cast<uint32_t>(value >> 32)) + big32(static_cast<uint32_t>(value));
}

std::string blockTrack(uint64_t start, int number, const std::string& isrc, bool audio,
                       const std::vector<std::pair<uint64_t, int>>& indices) {
  std::string track = big64(start) + static_cast<char>(number) + isrc +
                      std::string(12 - isrc.size(), '\0') + (audio ? '\0' : '\x80') +
                      std::string(13, '\0') + static_cast<char>(indices.size());
  for (const auto& [offset, index] : indices) {
    track += big64(offset) + static_cast<char>(index) + std::string(3, '\0');
  }
  return track;
}

/// A CUESHEET block of these tracks.
std::string cuesheetBlock(const std::string& catalogue, const std::vector<std::string>& tracks) {
  std::string block = catalogue + std::string(128 - catalogue.size(), '\0') + big64(88200) +
                      '\x80' + std::string(258, '\0') + static_cast<char>(tracks.size());
  for (const std::string& track : tracks) block += track;
  return block;
}

const std::vector<std::string> kThreeTracksAndLeadOut = {
    blockTrack(0, 1, "USABC2600001", true, {{0, 0}, {588, 1}}),
    blockTrack(441000, 2, "", true, {{0, 0}, {44100, 1}, {88200, 2}}),
    blockTrack(882000, 3, "nonsense", true, {{0, 1}}),
    blockTrack(1323000, 170, "", true, {}),
};

TEST(FlacCuesheet, EveryTrackOfTheBlockIsAMark) {
  const Folder folder;
  const std::string block = cuesheetBlock("0731452345622", kThreeTracksAndLeadOut);
  const std::string path = folder.write("a.flac", flacFile(folder, 1323000, flacBlock(5, block)));
  const auto input = AudioInput::open(path, Dither::kNone);
  EXPECT_THAT(
      shownMarks(input->info().marks),
      ElementsAre("0.000 Track 01", "0.000 ISRC=USABC2600001", "11.00 Track 02", "20.00 Track 03"));
  EXPECT_EQ(input->info().tags.catalogue, "0731452345622");
  EXPECT_THAT(input->info().pauses, ElementsAre(10.0));
  EXPECT_DOUBLE_EQ(input->info().marks[0].pause_behind, 588.0 / 44100);
}

TEST(FlacCuesheet, ADamagedBlockAndOneOfASingleTrackMakeNoMarks) {
  const std::string whole = cuesheetBlock("0731452345622", kThreeTracksAndLeadOut);
  for (size_t length = 0; length <= whole.size(); ++length) {
    const std::string cut = whole.substr(0, length);
    Tags tags;
    const auto marks = marksOfCuesheetBlock(std::as_bytes(std::span(cut)), 44100, tags);
    EXPECT_EQ(marks.marks.empty(), length < whole.size()) << length;
    EXPECT_EQ(tags.catalogue.empty(), length < whole.size()) << length;
  }
  const std::string single =
      cuesheetBlock("", {kThreeTracksAndLeadOut[0], blockTrack(0, 2, "", false, {{0, 1}}),
                         kThreeTracksAndLeadOut[3]});
  Tags tags;
  EXPECT_THAT(marksOfCuesheetBlock(std::as_bytes(std::span(single)), 44100, tags).marks, IsEmpty());
}

/// A block of comments.
std::string commentBlock(const std::vector<std::string>& comments) {
  std::string block = little32(0) + little32(static_cast<uint32_t>(comments.size()));
  for (const std::string& comment : comments) {
    block += little32(static_cast<uint32_t>(comment.size())) + comment;
  }
  return block;
}

TEST(FlacCuesheet, ASheetAmongTheCommentsHasTitlesAndComesBeforeTheBlock) {
  const Folder folder;
  const std::string sheet =
      "TITLE \"Disc\"\r\nPERFORMER \"Band\"\r\nFILE \"gone.wav\" WAVE\r\n  TRACK 01 AUDIO\r\n"
      "    TITLE \"One\"\r\n    INDEX 01 00:00:00\r\n  TRACK 02 AUDIO\r\n    TITLE \"Two\"\r\n"
      "    INDEX 00 00:08:00\r\n    INDEX 01 00:10:00\r\n";
  const std::string blocks =
      flacBlock(5, cuesheetBlock("0731452345622", kThreeTracksAndLeadOut)) +
      flacBlock(4, commentBlock({"TITLE=Whole", "cuesheet=" + sheet, "ARTIST=Somebody"}));
  const std::string path = folder.write("a.flac", flacFile(folder, 1323000, blocks));
  const InputInfo info = AudioInput::open(path, Dither::kNone)->info();
  EXPECT_THAT(shownMarks(info.marks), ElementsAre("0.000 One", "10.00 Two"));
  EXPECT_EQ(info.marks[0].given_by, "") << "it comes from the input";
  EXPECT_EQ(info.tags.album, "Disc");
  EXPECT_EQ(info.tags.artist, "Somebody") << "the file's own tag wins";
  EXPECT_THAT(info.pauses, ElementsAre(8.0));
  EXPECT_THAT(info.warnings, IsEmpty());
}

TEST(FlacCuesheet, ACommentThatIsNoSheetOfOneFileIsPassedOver) {
  const Folder folder;
  for (const std::string sheet :
       {"nonsense", "FILE \"a\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"}) {
    const std::string path = folder.write(
        "a.flac", flacFile(folder, 1000, flacBlock(4, commentBlock({"CUESHEET=" + sheet}))));
    EXPECT_THAT(AudioInput::open(path, Dither::kNone)->info().marks, IsEmpty());
  }
  const std::string damaged =
      "FILE \"a\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n  TRACK 02 AUDIO\n";
  const std::string path = folder.write(
      "a.flac", flacFile(folder, 1000, flacBlock(4, commentBlock({"CUESHEET=" + damaged}))));
  const InputInfo info = AudioInput::open(path, Dither::kNone)->info();
  EXPECT_THAT(info.marks, IsEmpty());
  EXPECT_THAT(info.warnings, ElementsAre(HasSubstr("its tracks are left out")));
}

}  // namespace
}  // namespace velmor::render::test
