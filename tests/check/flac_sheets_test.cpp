// Sheets as they are kept beside FLAC files, each spoilt in one place, and the rule that tells it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "check/check.h"
#include "check/report/report_text.h"
#include "tests/check/test_images.h"

namespace velmor::check::test {
namespace {

/// A good sheet of two tracks, in whose text one thing is put for another.
struct Change {
  const char* name;
  const char* from;
  const char* to;
  const char* rule;  ///< empty: the sheet stays good
};

constexpr const char* kGood =
    "CATALOG 0731452345622\n"
    "FILE \"image.bin\" BINARY\n"
    "  TRACK 01 AUDIO\n"
    "    FLAGS PRE\n"
    "    ISRC USABC0500001\n"
    "    INDEX 01 00:00:00\n"
    "  TRACK 02 AUDIO\n"
    "    ISRC USABC0500002\n"
    "    INDEX 00 00:06:00\n"
    "    INDEX 01 00:08:00\n"
    "    INDEX 02 00:12:00\n"
    "REM FLAC__lead-in 88200\n"
    "REM FLAC__lead-out 170 882000\n";

constexpr Change kChanges[] = {
    {"CatalogTwice", "FILE", "CATALOG 0731452345622\nFILE", "repeated-command"},
    {"CatalogBare", "CATALOG 0731452345622", "CATALOG", "catalog-form"},
    {"CatalogTooLong", "0731452345622", "07314523456220", "catalog-form"},
    {"CatalogNot13Digits", "0731452345622", "073145234562", "catalog-12-digits"},
    {"CatalogWithLetters", "0731452345622", "073145234562x", "catalog-form"},
    {"FlagsTwice", "FLAGS PRE", "FLAGS PRE\n    FLAGS PRE", "repeated-command"},
    {"FlagsBeforeATrack", "  TRACK 01", "FLAGS PRE\n  TRACK 01", "misplaced-command"},
    {"FlagsBehindAnIndex", "    INDEX 01 00:00:00", "    INDEX 01 00:00:00\n    FLAGS DCP",
     "command-out-of-place"},
    {"IndexBeforeATrack", "  TRACK 01", "INDEX 01 00:00:00\n  TRACK 01", "misplaced-command"},
    {"IndexBare", "INDEX 01 00:08:00", "INDEX", "bad-number"},
    {"FirstIndexNeither0Nor1", "INDEX 01 00:00:00", "INDEX 02 00:00:00", "index-order"},
    {"IndicesOutOfSequence", "INDEX 02 00:12:00", "INDEX 03 00:12:00", "index-order"},
    {"IndexOver99", "INDEX 02 00:12:00", "INDEX 100 00:12:00", "bad-number"},
    {"IndexWithoutATime", "INDEX 01 00:08:00", "INDEX 01", "bad-number"},
    {"IndexWithATimeThatIsNone", "00:08:00", "00:0x:00", "bad-number"},
    {"IndexWithSecondsOver59", "00:08:00", "00:60:00", "time-out-of-range"},
    {"IndexWithFramesOver74", "00:08:00", "00:08:75", "time-out-of-range"},
    {"IndexInSamplesOfNoWholeSector", "00:08:00", "352801", "bad-number"},
    {"FirstIndexNot0", "INDEX 01 00:00:00", "INDEX 01 00:00:10", "file-starts-late"},
    {"IndicesDescendInATrack", "INDEX 02 00:12:00", "INDEX 02 00:07:00", "indices-descend"},
    {"IndicesDescendAcrossTracks", "INDEX 01 00:00:00", "INDEX 01 00:00:00\n    INDEX 02 00:07:00",
     "indices-descend"},
    {"IsrcTwice", "ISRC USABC0500001", "ISRC USABC0500001\n    ISRC USABC0500001", "repeated-isrc"},
    {"IsrcBeforeATrack", "  TRACK 01", "ISRC USABC0500001\n  TRACK 01", "misplaced-command"},
    {"IsrcBehindAnIndex", "    INDEX 01 00:00:00", "    INDEX 01 00:00:00\n    ISRC USABC0500003",
     "repeated-isrc"},
    {"IsrcBehindAnIndexAlone", "    ISRC USABC0500001\n    INDEX 01 00:00:00",
     "    INDEX 01 00:00:00\n    ISRC USABC0500001", "command-out-of-place"},
    {"IsrcBare", "ISRC USABC0500001", "ISRC", "empty-isrc"},
    {"IsrcThatIsNone", "USABC0500001", "USABC05000O1", "isrc-form"},
    {"TrackWithIndex00Alone", "    INDEX 01 00:08:00\n    INDEX 02 00:12:00\n", "", "no-index-01"},
    {"TrackWithoutIndices", "    INDEX 00 00:06:00\n    INDEX 01 00:08:00\n    INDEX 02 00:12:00\n",
     "", "no-index-01"},
    {"FirstTrackWithoutIndices", "    INDEX 01 00:00:00\n", "", "no-index-01"},
    {"TrackBare", "TRACK 02 AUDIO", "TRACK", "bad-number"},
    {"TrackZero", "TRACK 01 AUDIO", "TRACK 00 AUDIO", "track-number"},
    {"TrackNumberThatIsNone", "TRACK 02 AUDIO", "TRACK xx AUDIO", "bad-number"},
    {"TrackOver99", "TRACK 02 AUDIO", "TRACK 100 AUDIO", "track-number"},
    {"TracksOutOfSequence", "TRACK 02 AUDIO", "TRACK 03 AUDIO", "track-number"},
    {"TrackWithoutAMode", "TRACK 02 AUDIO", "TRACK 02", "unknown-track-mode"},
    {"LeadInBare", "lead-in 88200", "lead-in", "flac-remark"},
    {"LeadInThatIsNone", "lead-in 88200", "lead-in x", "flac-remark"},
    {"LeadInOfNoWholeSector", "lead-in 88200", "lead-in 88201", "flac-remark"},
    {"LeadOutTwice", "REM FLAC__lead-out 170 882000",
     "REM FLAC__lead-out 170 882000\nREM FLAC__lead-out 170 882000", "flac-remark"},
    {"LeadOutBare", "lead-out 170 882000", "lead-out", "flac-remark"},
    {"LeadOutNot170", "lead-out 170", "lead-out 169", "flac-remark"},
    {"LeadOutWithoutAnOffset", "lead-out 170 882000", "lead-out 170", "flac-remark"},
    {"LeadOutWithAnOffsetThatIsNone", "170 882000", "170 x", "flac-remark"},
    {"LeadOutThatIsNotTheEnd", "170 882000", "170 881412", "flac-remark"},
    {"Plain", "", "", ""},
    {"WithDashesInTheIsrc", "USABC0500001", "US-ABC-05-00001", "isrc-dashes"},
    {"WithCarriageReturns", "\n", "\r\n", ""},
    {"WithoutALastLineEnd", "170 882000\n", "170 882000", "no-last-line-end"},
    {"WithAQuotedIsrc", "USABC0500001", "\"USABC0500001\"", "isrc-quoted"},
};

class FlacSheetTest : public testing::TestWithParam<Change> {
 protected:
  FlacSheetTest() {
    TestImage image(1500);
    image.silence(450 * 588, 600 * 588).fadeIn(600 * 588).write(m_folder / "image.bin");
  }

  Report report() {
    std::string text = kGood;
    const Change& change = GetParam();
    const std::string from = change.from;
    const bool everywhere = from == "\n";
    for (size_t at = text.find(from); !from.empty() && at != std::string::npos;) {
      text.replace(at, from.size(), change.to);
      at = everywhere ? text.find(from, at + std::string(change.to).size()) : std::string::npos;
    }
    EXPECT_TRUE(from.empty() || text != kGood);
    writeFile(m_folder / "image.cue", text);
    return check(m_folder / "image.cue", {});
  }

  TemporaryFolder m_folder;
};

TEST_P(FlacSheetTest, IsToldByTheRuleThatItBreaks) {
  std::vector<std::string> rules;
  for (const Finding& f : report().findings)
    if (f.rule != "index-02") rules.emplace_back(f.rule);
  if (*GetParam().rule == '\0')
    EXPECT_THAT(rules, testing::IsEmpty());
  else
    EXPECT_THAT(rules, testing::Contains(GetParam().rule));
}

INSTANTIATE_TEST_SUITE_P(Of, FlacSheetTest, testing::ValuesIn(kChanges),
                         [](const auto& change) { return std::string(change.param.name); });

TEST(FlacSheets, WithNoTrackHaveNone) {
  TemporaryFolder folder;
  TestImage(1500).write(folder / "image.bin");
  writeFile(folder / "image.cue", "FILE \"image.bin\" BINARY\n");
  EXPECT_EQ(check(folder / "image.cue", {}).findings.at(0).rule, "no-tracks");
}

TEST(FlacSheets, OfTheGoodKindAreReadyForMetaflac) {
  TemporaryFolder folder;
  TestImage(1500).write(folder / "image.bin");
  const std::string good = kGood;
  std::string quoted = good, returns = good;
  quoted.replace(quoted.find("USABC0500001"), 12, "\"USABC0500001\"");
  for (size_t at = 0; (at = returns.find('\n', at)) != std::string::npos; at += 2)
    returns.replace(at, 1, "\r\n");
  for (const std::string& text : {good, quoted, returns, good.substr(0, good.size() - 1),
                                  returns.substr(0, returns.size() - 2)}) {
    writeFile(folder / "image.cue", text);
    const Report report = check(folder / "image.cue", {{Reader::kMetaflac}, {}});
    EXPECT_FALSE(report.failed(false)) << findingLine(report.findings.at(0));
  }
}

}  // namespace
}  // namespace velmor::check::test
