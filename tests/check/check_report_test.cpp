// What the checks say about the layout of a disc and about its sound.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "check/check.h"
#include "check/report/report_text.h"
#include "tests/check/test_images.h"

namespace velmor::check::test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

/// A folder with an image of 1500 sectors, and the reports on sheets beside it.
class ReportTest : public testing::Test {
 protected:
  ReportTest() { TestImage(1500).write(m_folder / "image.bin"); }

  Report reportOn(const std::string& sheet, const CheckOptions& options = {}) {
    writeFile(m_folder / "image.cue", sheet);
    return check(m_folder / "image.cue", options);
  }

  std::vector<std::string> rulesOf(const Report& report) {
    std::vector<std::string> rules;
    for (const Finding& f : report.findings) rules.emplace_back(f.rule);
    return rules;
  }

  std::vector<std::string> rulesFor(const std::string& tracks) {
    return rulesOf(reportOn("FILE \"image.bin\" BINARY\r\n" + tracks));
  }

  static std::string track(int number, const std::string& lines) {
    return "TRACK 0" + std::to_string(number) + " AUDIO\r\n" + lines + "\r\n";
  }

  TemporaryFolder m_folder;
};

TEST_F(ReportTest, HasNothingToSayAboutASoundDisc) {
  TestImage(1500).silence(375 * 588, 525 * 588).fadeIn(525 * 588).write(m_folder / "image.bin");
  const Report report = reportOn("FILE \"image.bin\" BINARY\r\n" + track(1, "INDEX 01 00:00:00") +
                                 track(2, "INDEX 00 00:05:00\r\nINDEX 01 00:07:00"));
  EXPECT_TRUE(report.findings.empty()) << findingLine(report.findings.at(0));
  EXPECT_EQ(report.disc.length, 1500);
}

TEST_F(ReportTest, TellsAnIndexThatCdrdaoMovesFromOneThatItRefuses) {
  // Counted from the start of track 2, 12 s lie in its 15 s, and behind its 10 s.
  for (const bool refused : {false, true}) {
    const std::string start = refused ? "00:10:00" : "00:05:00";
    const Report report = reportOn("FILE \"image.bin\" BINARY\r\n" + track(1, "INDEX 01 00:00:00") +
                                   track(2, "INDEX 01 " + start + "\r\nINDEX 02 00:12:00"));
    ASSERT_EQ(report.findings.size(), 1U);
    EXPECT_EQ(report.findings[0].rule, "index-02");
    EXPECT_EQ(!report.findings[0].refused.empty(), refused);
    EXPECT_EQ(report.findings[0].damaged.empty(), refused);
  }
}

TEST_F(ReportTest, TellsALastTrackOfAnUnknownModeFromOneThatIsLost) {
  for (const bool last : {false, true}) {
    const std::string odd = "TRACK 01 MODE2/2324\r\nINDEX 01 00:00:00\r\n";
    const Report report = reportOn("FILE \"image.bin\" BINARY\r\n" + odd +
                                   (last ? "" : track(2, "INDEX 01 00:10:00")));
    const auto is_mode = [](const Finding& f) { return f.rule == "unknown-track-mode"; };
    const auto found = std::ranges::find_if(report.findings, is_mode);
    ASSERT_NE(found, report.findings.end());
    EXPECT_EQ(std::ranges::count(found->refused, Reader::kCuetools), last ? 1 : 0);
    EXPECT_EQ(std::ranges::count(found->damaged, Reader::kCuetools), last ? 0 : 1);
  }
}

struct Layout {
  const char* rule;
  const char* tracks;
};

class LayoutRuleTest : public ReportTest, public testing::WithParamInterface<Layout> {};

TEST_P(LayoutRuleTest, IsSaidOfADiscThatBreaksIt) {
  EXPECT_THAT(rulesFor(GetParam().tracks), Contains(GetParam().rule));
}

INSTANTIATE_TEST_SUITE_P(
    Of, LayoutRuleTest,
    testing::Values(
        Layout{"no-tracks", ""}, Layout{"track-number", "TRACK 00 AUDIO\nINDEX 01 00:00:00\n"},
        Layout{"track-number",
               "TRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 03 AUDIO\nINDEX 01 00:05:00\n"},
        Layout{"no-index-01", "TRACK 01 AUDIO\nINDEX 00 00:00:00\n"},
        Layout{"index-order", "TRACK 01 AUDIO\nINDEX 01 00:00:00\nINDEX 03 00:01:00\n"},
        Layout{"index-order", "TRACK 01 AUDIO\nINDEX 02 00:00:00\n"},
        Layout{"indices-descend",
               "TRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 AUDIO\nINDEX 00 00:07:00\n"
               "INDEX 01 00:05:00\n"},
        Layout{"empty-gap",
               "TRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 AUDIO\nINDEX 00 00:05:00\n"
               "INDEX 01 00:05:00\n"},
        Layout{"time-out-of-range", "TRACK 01 AUDIO\nINDEX 01 00:00:75\n"},
        Layout{"time-out-of-range", "TRACK 01 AUDIO\nINDEX 01 00:60:00\n"},
        Layout{"time-out-of-range", "TRACK 01 AUDIO\nPREGAP 00:60:00\nINDEX 01 00:00:00\n"},
        Layout{"time-out-of-range", "TRACK 01 AUDIO\nINDEX 01 00:00:00\nPOSTGAP 00:00:75\n"},
        Layout{"minutes-over-99", "TRACK 01 AUDIO\nPREGAP 100:00:00\nINDEX 01 00:00:00\n"},
        Layout{"file-starts-late", "TRACK 01 AUDIO\nINDEX 01 00:01:00\n"},
        Layout{"lead-in-on-top", "TRACK 01 AUDIO\nINDEX 00 00:00:00\nINDEX 01 00:02:00\n"},
        Layout{"not-audio", "TRACK 01 MODE1/2352\nINDEX 01 00:00:00\n"},
        Layout{"track-under-4-s",
               "TRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 AUDIO\n"
               "INDEX 01 00:03:74\n"},
        Layout{"track-under-4-s",
               "TRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 AUDIO\n"
               "INDEX 01 00:16:01\n"},
        Layout{"isrc-form", "TRACK 01 AUDIO\nISRC ABC\nINDEX 01 00:00:00\n"},
        Layout{"field-not-for-all",
               "TRACK 01 AUDIO\nTITLE a\nINDEX 01 00:00:00\nTRACK 02 AUDIO\nINDEX 01 00:05:00\n"}));

TEST_F(ReportTest, TakesTrackNumbersFromOneTo99ThatFollowEachOther) {
  const std::string first =
      "TRACK 98 AUDIO\nINDEX 01 00:00:00\nTRACK 99 AUDIO\nINDEX 01 00:05:00\n";
  EXPECT_THAT(rulesFor(first), Not(Contains("track-number")));
  EXPECT_THAT(rulesFor(first + "TRACK 100 AUDIO\nINDEX 01 00:10:00\n"), Contains("track-number"));
}

TEST_F(ReportTest, CountsOnOverATrackNumberThatCannotBeRead) {
  EXPECT_THAT(rulesFor(track(1, "INDEX 01 00:00:00") + "TRACK xx AUDIO\nINDEX 01 00:05:00\n" +
                       track(3, "INDEX 01 00:10:00")),
              testing::AllOf(Contains("bad-number"), Not(Contains("track-number"))));
}

struct LongWord {
  const char* rule;
  const char* before;
  const char* behind;
};

class LongWords : public ReportTest, public testing::WithParamInterface<LongWord> {};

TEST_P(LongWords, AreShownWithTheirFirstFortyCharacters) {
  const Report report = reportOn(GetParam().before + std::string(41, 'L') + GetParam().behind);
  const auto has_the_rule = [](const Finding& f) { return f.rule == GetParam().rule; };
  const auto found = std::ranges::find_if(report.findings, has_the_rule);
  ASSERT_NE(found, report.findings.end());
  EXPECT_THAT(found->what, HasSubstr('"' + std::string(40, 'L') + '"'));
}

constexpr const char* kOneTrack = "\nFILE image.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n";

INSTANTIATE_TEST_SUITE_P(
    Everywhere, LongWords,
    testing::Values(
        LongWord{"unknown-command", "", kOneTrack}, LongWord{"catalog-form", "CATALOG ", kOneTrack},
        LongWord{"file-type", "FILE image.bin ", "\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"},
        LongWord{"unknown-track-mode", "FILE image.bin BINARY\nTRACK 01 ", "\nINDEX 01 00:00:00\n"},
        LongWord{"isrc-form", "FILE image.bin BINARY\nTRACK 01 AUDIO\nISRC ",
                 "\nINDEX 01 00:00:00\n"},
        LongWord{"unknown-flag", "FILE image.bin BINARY\nTRACK 01 AUDIO\nFLAGS ",
                 "\nINDEX 01 00:00:00\n"}));

TEST_F(ReportTest, TakesATrackOfExactlyFourSeconds) {
  EXPECT_THAT(rulesFor(track(1, "INDEX 01 00:00:00") + track(2, "INDEX 01 00:04:00") +
                       track(3, "INDEX 01 00:16:00")),
              Not(Contains("track-under-4-s")));
}

TEST_F(ReportTest, DoesNotCountTheNextTracksPauseAmongTheFourSeconds) {
  // cdrdao warns of the first as well, and takes the second.
  const auto with_pause_at = [this](const std::string& time) {
    return rulesFor(track(1, "INDEX 01 00:00:00") +
                    track(2, "INDEX 00 " + time + "\r\nINDEX 01 00:06:00"));
  };
  EXPECT_THAT(with_pause_at("00:03:74"), Contains("track-under-4-s"));
  EXPECT_THAT(with_pause_at("00:04:00"), Not(Contains("track-under-4-s")));
  TestImage(1500).write(m_folder / "two.bin");
  EXPECT_THAT(rulesFor(track(1, "INDEX 01 00:00:00") + "TRACK 02 AUDIO\nINDEX 00 00:03:00\n" +
                       "FILE two.bin BINARY\nINDEX 01 00:00:00\n"),
              Contains("track-under-4-s"));
}

TEST_F(ReportTest, GivesNoLeadingZeroToTwelveDigitsThatAreNoUpc) {
  const auto advice_on = [this](const std::string& catalog) {
    const Report report = reportOn("CATALOG " + catalog + "\nFILE \"image.bin\" BINARY\n" +
                                   track(1, "INDEX 01 00:00:00"));
    EXPECT_THAT(rulesOf(report), Contains("catalog-12-digits"));
    return report.findings.at(0).action;
  };
  EXPECT_THAT(advice_on("731452345622"), HasSubstr("0731452345622"));
  EXPECT_THAT(advice_on("731452345628"), HasSubstr("bar code"));
}

TEST_F(ReportTest, NamesAnImageThatIsMissing) {
  EXPECT_THAT(rulesOf(reportOn("FILE \"none.bin\" BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n")),
              Contains("image-missing"));
}

TEST_F(ReportTest, KnowsTheLengthOfADiscOnlyWhenEveryFileIsThere) {
  const std::string whole = "FILE image.bin BINARY\n" + track(1, "INDEX 01 00:00:00");
  EXPECT_TRUE(reportOn(whole).disc.length_known);
  EXPECT_FALSE(
      reportOn(whole + "FILE none.bin BINARY\n" + track(2, "INDEX 01 00:00:00")).disc.length_known);
  EXPECT_FALSE(reportOn("TITLE \"No file\"\n").disc.length_known);
}

TEST_F(ReportTest, ShowsTwoHundredCharactersOfTheNameOfAMissingImage) {
  const Report report =
      reportOn("FILE \"" + std::string(201, 'n') + "\" BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n",
               {{Reader::kLibburn}, {}});
  const std::string shown = '"' + std::string(200, 'n') + '"';
  const auto says = [](const std::string& rule, const std::string& beginning) {
    return testing::AllOf(testing::Field(&Finding::rule, rule),
                          testing::Field(&Finding::what, testing::StartsWith(beginning)));
  };
  EXPECT_THAT(report.findings, Contains(says("image-missing", shown + " cannot be opened: ")));
  EXPECT_THAT(report.findings,
              Contains(says("file-from-working-folder", shown + " counts from the sheet's")));
}

TEST_F(ReportTest, EndsATrackBeforeThePauseOfTheNextUnlessThatBeginsWithTheTrack) {
  const auto own_end_with_pause_at = [this](const std::string& time) {
    const Report report = reportOn("FILE \"image.bin\" BINARY\n" + track(1, "INDEX 01 00:02:00") +
                                   track(2, "INDEX 00 " + time + "\r\nINDEX 01 00:08:00"));
    return report.disc.places.at(0)->own_end;
  };
  EXPECT_EQ(own_end_with_pause_at("00:02:01"), 151);
  EXPECT_EQ(own_end_with_pause_at("00:02:00"), 600);
  EXPECT_EQ(own_end_with_pause_at("00:01:00"), 600);
  EXPECT_EQ(own_end_with_pause_at("00:09:00"), 600);
}

TEST_F(ReportTest, TakesAnImageForBesideTheSheetHoweverItsFolderIsSpelled) {
  EXPECT_THAT(rulesOf(reportOn("FILE \"./image.bin\" BINARY\n" + track(1, "INDEX 01 00:00:00"))),
              Not(Contains("image-named-otherwise")));
}

TEST_F(ReportTest, CountsNoFileThatNoTrackIsIn) {
  TestImage(400).write(m_folder / "other.bin");
  const Report report =
      reportOn("FILE other.bin BINARY\nFILE image.bin BINARY\n" + track(1, "INDEX 01 00:00:00"));
  EXPECT_THAT(rulesOf(report), Contains("file-without-track"));
  EXPECT_EQ(report.disc.length, 1500);
  EXPECT_EQ(report.disc.places.at(0)->on_disc, 0);
}

TEST_F(ReportTest, TakesAFolderForNoImage) {
  std::filesystem::create_directory(m_folder / "image");
  const Report report = reportOn("FILE \"image\" BINARY\n" + track(1, "INDEX 01 00:00:00"));
  EXPECT_THAT(rulesOf(report), Contains("image-missing"));
  EXPECT_THAT(report.findings[0].what, HasSubstr("not a regular file"));
}

TEST_F(ReportTest, SaysOfAContainerThatWasBrokenOffThatItHoldsNoSamples) {
  const std::string track1 = track(1, "INDEX 01 00:00:00");
  writeFile(m_folder / "a.wav", wavHeader(4).substr(0, 36));
  EXPECT_THAT(rulesOf(reportOn("FILE a.wav WAVE\n" + track1)), Contains("image-empty"));
  writeFile(m_folder / "a.aiff", std::string("FORM\0\0\0\4AIFF", 12));
  EXPECT_THAT(rulesOf(reportOn("FILE a.aiff AIFF\n" + track1)), Contains("image-empty"));
}

TEST_F(ReportTest, GoesByTheLengthOfTheDiscWithTheSilenceThatTheSheetAdds) {
  // 1500 sectors of image after a PREGAP.
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"73:40:00", ""},                 // 333,000 sectors in all
      {"73:40:01", "over-74-minutes"},  // one more
      {"79:37:00", "over-74-minutes"},  // 359,775
      {"79:37:01", "over-79-57"},
      {"88:08:00", "over-79-57"},  // 398,100: the last sector is LBA 398,099
      {"88:08:01", "disc-too-long"},
  };
  for (const auto& [pregap, rule] : cases) {
    // Some readers lose it, whatever its length.
    std::vector<std::string> due{"pregap"};
    if (!rule.empty()) due.push_back(rule);
    EXPECT_THAT(rulesFor(track(1, "PREGAP " + pregap + "\r\nINDEX 01 00:00:00")),
                testing::UnorderedElementsAreArray(due))
        << pregap;
  }
}

TEST_F(ReportTest, HearsTheEndOfTheTrackBeforeInAStartInsideASector) {
  // The sound goes on for 123 samples into sector 400, then a pause to its end.
  TestImage(1500).silence(400 * 588 + 123, 402 * 588).write(m_folder / "image.bin");
  const Report report = reportOn("FILE \"image.bin\" BINARY\n" + track(1, "INDEX 01 00:00:00") +
                                 track(2, "INDEX 01 00:05:25"));
  EXPECT_THAT(rulesOf(report), testing::ElementsAre("starts-inside-sector"));
  EXPECT_THAT(report.findings[0].what, HasSubstr("123 samples"));
}

TEST_F(ReportTest, SaysHowLongATitleStartsSilentAndTheDiscEndsSilent) {
  TestImage(1500)
      .silence(400 * 588, 475 * 588)
      .silence(1200 * 588, 1500 * 588)
      .write(m_folder / "image.bin");
  const Report report = reportOn("FILE \"image.bin\" BINARY\n" + track(1, "INDEX 01 00:00:00") +
                                 track(2, "INDEX 01 00:05:25"));
  EXPECT_THAT(rulesOf(report), testing::ElementsAre("silence-at-start", "silence-at-end"));
  EXPECT_THAT(report.findings[0].what, HasSubstr("1.00 s"));
  EXPECT_THAT(report.findings[1].what, HasSubstr("4.00 s"));
}

TEST_F(ReportTest, TakesTheSilenceAtTheEndOfAFileBeforeTheLastForAPause) {
  TestImage(1500).silence(1200 * 588, 1500 * 588).write(m_folder / "image.bin");
  TestImage(400).write(m_folder / "b.bin");
  const std::string two = "FILE image.bin BINARY\n" + track(1, "INDEX 01 00:00:00") +
                          "FILE b.bin BINARY\n" + track(2, "INDEX 01 00:00:00");
  EXPECT_THAT(rulesOf(reportOn(two)), Not(Contains("silence-at-end")));
  const std::string unused =
      "FILE image.bin BINARY\n" + track(1, "INDEX 01 00:00:00") + "FILE b.bin BINARY\n";
  EXPECT_THAT(rulesOf(reportOn(unused)), Contains("silence-at-end"));
}

TEST_F(ReportTest, CountsClippedRunsAcrossSectorsAndNotPeaks) {
  TestImage(1500)
      .level(700 * 588 - 2, 5, 32767)  // one run over a sector's edge
      .level(900 * 588, 2, 32767)      // two samples only touch full scale
      .level(950 * 588, 3, -32768)
      .write(m_folder / "image.bin");
  const Report report = reportOn("FILE \"image.bin\" BINARY\n" + track(1, "INDEX 01 00:00:00"));
  ASSERT_THAT(rulesOf(report), testing::ElementsAre("clipped"));
  EXPECT_THAT(report.findings[0].what, HasSubstr("2 runs"));
  EXPECT_THAT(report.findings[0].what, HasSubstr("the longest 5, the first at 00:09:24"));
}

TEST_F(ReportTest, ReadsBigEndianSamplesAsTheyAre) {
  std::string bytes = TestImage(400).level(588, 3, 32767).bytes();
  for (size_t i = 0; i < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
  writeFile(m_folder / "image.bin", bytes);
  const Report report = reportOn("FILE \"image.bin\" MOTOROLA\n" + track(1, "INDEX 01 00:00:00"));
  EXPECT_THAT(rulesOf(report), Contains("clipped"));
}

TEST_F(ReportTest, LimitsItselfToTheReadersThatMatter) {
  const std::string sheet =
      "CATALOG \"0731452345622\"\nFILE \"image.bin\" BINARY\n" + track(1, "INDEX 01 00:00:00");
  EXPECT_EQ(reportOn(sheet).count(Severity::kWarning), 1);
  EXPECT_FALSE(reportOn(sheet).failed(false));
  EXPECT_TRUE(reportOn(sheet).failed(true));
  EXPECT_TRUE(reportOn(sheet, {{Reader::kMpv}, {}}).findings.empty());
  EXPECT_TRUE(reportOn(sheet, {{Reader::k3b}, {}}).failed(false));
}

TEST_F(ReportTest, IsSortedByWeightThenByLine) {
  const Report report = reportOn("TITLE \"a\\\"\nCATALOG 123\nFILE \"image.bin\" BINARY\n" +
                                 track(1, "INDEX 00 00:00:00\nINDEX 01 00:02:00") +
                                 track(2, "ISRC x\nINDEX 01 00:09:00"));
  int before = 0, line = 0;
  for (const Finding& f : report.findings) {
    const int weight = static_cast<int>(f.severity);
    EXPECT_GE(weight, before);
    if (weight == before) {
      EXPECT_GE(f.line, line);
    }
    before = weight;
    line = f.line;
  }
  EXPECT_GE(report.findings.size(), 4u);
}

TEST_F(ReportTest, EndsInTimeOnAHundredThousandTracksAndFiles) {
  std::string tracks = "FILE \"image.bin\" BINARY\n";
  for (int i = 0; i < 100000; ++i) tracks += "TRACK 1 AUDIO\nINDEX 1 0:0:0\nINDEX 1 0:19:0\n";
  EXPECT_TRUE(reportOn(tracks).failed(false));
  std::string files;
  for (int i = 0; i < 100000; ++i) files += "FILE image.bin BINARY\n";
  EXPECT_TRUE(reportOn(files).failed(false));
}

}  // namespace
}  // namespace velmor::check::test
