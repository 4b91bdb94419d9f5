// Sheets that no set is made of, and what they are told.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ddp/set_folder.h"

namespace velmor::ddp::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

struct BadSheet {
  const char* name;
  const char* from;  ///< in the rich sheet
  const char* to;
  const char* rule;
};

const BadSheet kBad[] = {
    {"DataTracks", "TRACK 02 AUDIO", "TRACK 02 MODE1/2352", "set-holds-audio-only"},
    {"FirstTrackTwo", "TRACK 01 AUDIO", "TRACK 02 AUDIO", "first-track"},
    {"GapInNumbers", "TRACK 02 AUDIO", "TRACK 03 AUDIO", "track-number"},
    {"CopyAndScms", "FLAGS DCP 4CH", "FLAGS DCP SCMS", "copy-flags"},
    {"UnknownFlag", "FLAGS PRE", "FLAGS LOUD", "unknown-flag"},
    {"TwelveDigits", "CATALOG 0731452345622", "CATALOG 731452345622", "catalog-12-digits"},
    {"WrongCheckDigit", "CATALOG 0731452345622", "CATALOG 0731452345621", "catalog-check-digit"},
    {"SmallIsrc", "USABC2600001", "usabc2600001", "isrc-lower-case"},
    {"IsrcOfSix", "USABC2600001", "USABC2", "isrc-form"},
    {"IsrcTwice", "USABC2600002", "USABC2600001", "isrc-twice"},
    {"ShortTrack", "INDEX 00 00:08:00", "INDEX 00 00:03:00", "indices-descend"},
    {"TrackUnderFourSeconds", "INDEX 00 00:08:00\n    INDEX 01 00:10:00", "INDEX 01 00:16:50",
     "track-under-4-s"},
    {"SkippedIndex", "INDEX 02", "INDEX 03", "index-order"},
    {"PregapUnderTwoSeconds", "INDEX 01 00:00:00", "INDEX 00 00:00:00\n    INDEX 01 00:01:74",
     "first-pregap"},
    {"PregapOverItsField", "INDEX 01 00:00:00", "PREGAP 02:13:25\n    INDEX 01 00:00:00",
     "first-pregap"},
    {"DiscTooLong", "INDEX 01 00:00:00", "POSTGAP 99:00:00\n    INDEX 01 00:00:00",
     "disc-too-long"},
    {"NoImage", "\"a.bin\"", "\"b.bin\"", "image-missing"},
    {"MasterIdTooLong", "CATALOG",
     "REM MASTER_ID \"0123456789012345678901234567890123456789012345678\"\nCATALOG", "master-id"},
    {"PastTheEnd", "INDEX 01 00:10:00", "INDEX 01 00:20:00", "index-past-end"}};

class Refusals : public testing::TestWithParam<BadSheet> {};

TEST_P(Refusals, NameTheirRule) {
  std::string sheet = richSheet();
  const size_t at = sheet.find(GetParam().from);
  ASSERT_NE(at, std::string::npos);
  sheet.replace(at, std::string(GetParam().from).size(), GetParam().to);
  const SheetFolder sheets(sheet);
  EXPECT_THAT(sheets.refusals(), Contains(GetParam().rule)) << sheet;
}

INSTANTIATE_TEST_SUITE_P(Sheets, Refusals, testing::ValuesIn(kBad),
                         [](const auto& param) { return param.param.name; });

TEST(RefusedSheets, AreToldWithLineTrackRuleAndRemedyAndNothingIsWritten) {
  std::string sheet = richSheet();
  sheet.replace(sheet.find("FLAGS DCP 4CH"), 13, "FLAGS DCP SCMS");
  const SheetFolder sheets(sheet);
  const auto ended = sheets.run({"write", "a.cue", "-o", "set"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.out, HasSubstr("error line 16 track 2 [copy-flags] FLAGS has DCP"));
  EXPECT_THAT(ended.out, HasSubstr("-> Keep one of them."));
  EXPECT_THAT(ended.err, HasSubstr("nothing was written"));
  EXPECT_EQ(sheets.folder.names(), (std::vector<std::string>{"a.bin", "a.cue"}));
}

TEST(RefusedSheets, HaveMoreTextThanPacksHold) {
  // 253 packs hold the disc's empty title, the track's, and the end of both.
  const std::string head = "FILE \"a.bin\" BINARY\nTRACK 01 AUDIO\nTITLE \"";
  const std::string tail = "\"\nINDEX 01 00:00:00\n";
  const SheetFolder fits(head + std::string(253 * 12 - 2, 'x') + tail);
  EXPECT_THAT(fits.refusals(), testing::IsEmpty());
  const SheetFolder over(head + std::string(253 * 12 - 1, 'x') + tail);
  EXPECT_THAT(over.refusals(), Contains("cd-text-over"));
  SetOptions without;
  without.cd_text = false;
  EXPECT_THAT(over.refusals("a.cue", without), testing::IsEmpty());
}

TEST(RefusedSheets, NameAudioOfAnotherKind) {
  const SheetFolder sheets("FILE \"a.wav\" WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n");
  std::string wav = test_kit::wavFile(countingSectors(400));
  wav.replace(24, 4, test_kit::little32(48000));
  writeFile(sheets.folder / "a.wav", wav);
  EXPECT_THAT(sheets.refusals(), ElementsAre("audio-format"));
}

TEST(RefusedSheets, NameAudioThatIsNotLookedInto) {
  const SheetFolder sheets("FILE \"a.mp3\" MP3\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n");
  writeFile(sheets.folder / "a.mp3", "ID3");
  EXPECT_THAT(sheets.refusals(), ElementsAre("audio-not-taken"));
}

TEST(RefusedSheets, JoinNoFileThatEndsInsideASector) {
  const SheetFolder sheets(
      "FILE \"a.bin\" BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
      "FILE \"b.bin\" BINARY\nTRACK 02 AUDIO\nINDEX 01 00:00:00\n");
  writeFile(sheets.folder / "a.bin", countingFrames(400 * 588 + 1));
  writeFile(sheets.folder / "b.bin", countingFrames(400 * 588 + 1));
  EXPECT_THAT(sheets.refusals(), testing::ElementsAre("file-ends-inside-sector"));
}

}  // namespace
}  // namespace velmor::ddp::test
