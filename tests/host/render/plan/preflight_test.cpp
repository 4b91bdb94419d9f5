#include "host/render/plan/preflight.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/render/plan/preflight_texts.h"
#include "tests/host/render/plan/marks.h"

namespace velmor::render {
namespace {

using test::kSecond;
using test::marker;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

SinkConfig markersMode(int32_t track_ms = 0) {
  return {static_cast<int32_t>(kIsoFormatCode), 0, track_ms, 0, kTracksFromMarkers, 0};
}

PreflightFindings check(const SinkConfig& config, const std::vector<Mark>& marks, int64_t frames,
                        std::vector<std::pair<std::string, std::string>> metadata = {}) {
  const HostProject project{marks, std::move(metadata)};
  return checkBeforeRender(config, project, planTracks(config, marks, frames));
}

TEST(Preflight, HasNothingToSayOfAGoodDisc) {
  const PreflightFindings findings =
      check(markersMode(2000), {marker(0, "A"), marker(0, "ISRC=USABC2600001"), marker(60, "B")},
            kSecond * 120, {{"CUE:DISC_CATALOG", "0731452345622"}});
  EXPECT_THAT(findings.errors, IsEmpty());
  EXPECT_THAT(findings.warnings, IsEmpty());
}

TEST(Preflight, RegionsModeNeedsARegionWithAudio) {
  SinkConfig config = markersMode();
  config.track_mode = kTracksFromRegions;
  EXPECT_THAT(check(config, {}, kSecond * 60).errors, ElementsAre(HasSubstr("no region")));
  EXPECT_THAT(check(config, {marker(0, "A")}, kSecond * 60).errors,
              ElementsAre(HasSubstr("--region")));
  EXPECT_THAT(check(config, {{70.0, 80.0, "late"}}, kSecond * 60).errors,
              ElementsAre(HasSubstr("no region")));
  EXPECT_THAT(check(config, {{1.0, 10.0, "R"}}, kSecond * 60).errors, IsEmpty());
}

TEST(Preflight, ADiscHoldsNinetyNineTracks) {
  const auto errors = [](int tracks) {
    std::vector<Mark> marks;
    for (int i = 0; i < tracks; ++i) marks.push_back(marker(i * 4.0, "T"));
    return check(markersMode(), marks, kSecond * 4 * tracks).errors;
  };
  EXPECT_THAT(errors(99), IsEmpty());
  EXPECT_THAT(errors(100), ElementsAre(AllOf(HasSubstr("100 tracks"), HasSubstr("99"))));
}

TEST(Preflight, TheLastTrackNeedsFourSeconds) {
  EXPECT_THAT(check(markersMode(), {marker(0, "A"), marker(8, "B")}, kSecond * 12).warnings,
              IsEmpty());
  EXPECT_THAT(check(markersMode(), {marker(0, "A"), marker(8, "B")}, kSecond * 12 - 588).warnings,
              ElementsAre(HasSubstr("the last track lasts 0:03.987")));
  EXPECT_THAT(check(markersMode(), {}, kSecond).warnings, ElementsAre(HasSubstr("0:01.000")));
}

TEST(Preflight, KnowsTheTwoLengthsOfADisc) {
  const auto warnings = [](int64_t sectors) {
    return check(markersMode(), {}, sectors * 588).warnings;
  };
  EXPECT_THAT(warnings(333000), IsEmpty());
  EXPECT_THAT(warnings(333001), ElementsAre(AllOf(HasSubstr("74:00:01"), HasSubstr("74 minutes"))));
  EXPECT_THAT(warnings(359775), ElementsAre(HasSubstr("74 minutes")));
  EXPECT_THAT(warnings(359776), ElementsAre(AllOf(HasSubstr("79:57:01"), HasSubstr("79:57"))));
  EXPECT_THAT(warnings(359999), ElementsAre(HasSubstr("79:57")));
}

TEST(Preflight, AnOverlongDiscNeedsAWordThatItIsMeant) {
  const auto errors = [](int64_t sectors, bool allowed) {
    const std::vector<Mark> none;
    const SinkConfig config = markersMode();
    return checkBeforeRender(config, {}, planTracks(config, none, sectors * 588), allowed).errors;
  };
  EXPECT_THAT(errors(359999, false), IsEmpty());
  EXPECT_THAT(errors(360000, false),
              ElementsAre(AllOf(HasSubstr("80:00:00"), HasSubstr("--allow-overlong"))));
  EXPECT_THAT(errors(360000, true), IsEmpty());
  EXPECT_THAT(errors(449999, true), IsEmpty());
  EXPECT_THAT(errors(450000, true), ElementsAre(HasSubstr("end at 99:59:74")));
}

TEST(Preflight, SaysWhichTracksStartInsideASector) {
  const double inside = 60.0 + 1.0 / 44100;
  EXPECT_THAT(check(markersMode(), {marker(0, "A"), marker(inside, "B")}, kSecond * 120).warnings,
              ElementsAre(AllOf(HasSubstr("track 2 starts"), HasSubstr("--track-leadin"))));
  EXPECT_THAT(check(markersMode(),
                    {marker(0, "A"), marker(20, "B"), marker(inside, "C"), marker(inside + 5, "D")},
                    kSecond * 120)
                  .warnings,
              ElementsAre(HasSubstr("2 tracks (the first is 3) start")));
  EXPECT_THAT(
      check(markersMode(2000), {marker(0, "A"), marker(inside, "B")}, kSecond * 120).warnings,
      Not(Contains(HasSubstr("inside"))));
}

TEST(Preflight, ALeadInUnderASecondLetsTheIndexesMeet) {
  const std::vector<Mark> two = {marker(0, "A"), marker(60, "B")};
  EXPECT_THAT(check(markersMode(960), two, kSecond * 120).warnings,
              ElementsAre(HasSubstr("INDEX 00 and INDEX 01 of track 2 are")));
  EXPECT_THAT(check(markersMode(1000), two, kSecond * 120).warnings, IsEmpty());
  EXPECT_THAT(check(markersMode(500), {marker(0, "A")}, kSecond * 120).warnings, IsEmpty())
      << "one track has no track lead-in";
}

TEST(Preflight, NamesAllTracksWhoseIndexesMeetAtOnce) {
  SinkConfig config = markersMode(120);
  config.disc_leadin_ms = 13;
  std::vector<Mark> marks;
  for (int i = 0; i < 8; ++i) marks.push_back(marker(i * 10, "T"));
  EXPECT_THAT(
      check(config, marks, kSecond * 80).warnings,
      Contains(AllOf(HasSubstr("INDEX 00 and INDEX 01 of tracks 1, 2, 3, 4, 5 and 3 more are"),
                     HasSubstr("1000 ms"))));
  config = markersMode();
  config.disc_leadin_ms = 40;
  EXPECT_THAT(check(config, marks, kSecond * 80).warnings, IsEmpty());
}

TEST(Preflight, NamesTheTracksThatTheSheetPutsASectorBeforeTheirAudio) {
  const auto warnings = [](const std::vector<Mark>& marks, int32_t track_ms = 0) {
    return check(markersMode(track_ms), marks, kSecond * 120).warnings;
  };
  const auto at = [](int sector) { return marker(sector / 75.0, "T"); };
  EXPECT_THAT(warnings({at(0), at(751), at(1503)}),
              ElementsAre(AllOf(HasSubstr("INDEX 01 of track 2 lies one sector"),
                                HasSubstr("--portable-cue"))));
  EXPECT_THAT(warnings({at(0), at(751), at(1502)}),
              ElementsAre(HasSubstr("INDEX 01 of tracks 2 and 3 lies one sector")));
  EXPECT_THAT(warnings({at(0), at(753), at(1503)}), IsEmpty()) << "40 ms are three sectors";
  EXPECT_THAT(warnings({at(0), marker(10.001, "inside a sector")}, 1000),
              ElementsAre(HasSubstr("INDEX 01 of track 2 lies one sector")))
      << "the lead-in's end is aligned";
  SinkConfig config = markersMode();
  config.disc_leadin_ms = 500;
  EXPECT_THAT(check(config, {}, kSecond * 120).warnings,
              ElementsAre(HasSubstr("INDEX 01 of track 1 lies one sector")));
}

TEST(Preflight, ChecksTheCatalogueNumberUnderEitherSpelling) {
  for (const char* const key : {"CUE:DISC_CATALOG", "CUE:DISC_catalog"}) {
    EXPECT_THAT(check(markersMode(), {}, kSecond * 60, {{key, "0731452345620"}}).errors,
                ElementsAre(AllOf(HasSubstr("\"0731452345620\""), HasSubstr("check digit"))));
  }
  EXPECT_THAT(check(markersMode(), {}, kSecond * 60, {{"CUE:DISC_CATALOG", "731452345622"}}).errors,
              ElementsAre(HasSubstr("12 digits")));
}

TEST(Preflight, AnIsrcIsUsedOnceAndHasItsForm) {
  const auto warnings = [](const std::string& first, const std::string& second) {
    return check(markersMode(),
                 {marker(0, "A"), marker(0, first), marker(60, "B"), marker(60, second)},
                 kSecond * 120)
        .warnings;
  };
  EXPECT_THAT(warnings("ISRC=USABC2600001", "ISRC=USABC2600002"), IsEmpty());
  EXPECT_THAT(warnings("ISRC=USABC2600001", "isrc=USABC2600001"),
              ElementsAre(AllOf(HasSubstr("\"USABC2600001\""), HasSubstr("twice"))));
  EXPECT_THAT(warnings("ISRC=USABC2600001", "ISRC=us-abc-26-00001"),
              ElementsAre(HasSubstr("has not the form"), HasSubstr("twice")));
  EXPECT_THAT(warnings("ISRC=", "ISRC=USABC2600001"), ElementsAre(HasSubstr("has not the form")));
}

TEST(Preflight, SaysWhichIsrcsATrackHasNoPlaceFor) {
  const auto warnings = [](const std::vector<Mark>& marks) {
    return check(markersMode(), marks, kSecond * 120).warnings;
  };
  EXPECT_THAT(warnings({marker(0, "A"), marker(0, "ISRC=USABC2600001"), marker(60, "B"),
                        marker(60, "ISRC=USABC2600002"), marker(70, "ISRC=USABC2600003")}),
              ElementsAre(AllOf(HasSubstr("the ISRC \"USABC2600003\" (track 2) is left out"),
                                HasSubstr("only one"))));
  EXPECT_THAT(
      warnings({marker(0, "A"), marker(0, "ISRC=USABC2600001"), marker(2, "ISRC=USABC2600002"),
                marker(60, "B"), marker(60, "ISRC=USABC2600003"), marker(70, "ISRC=USABC2600004")}),
      ElementsAre(HasSubstr("the ISRCs \"USABC2600002\" (track 1) and \"USABC2600004\" "
                            "(track 2) are left out")));
}

TEST(Preflight, SaysWhichIsrcsLieInNoTrack) {
  SinkConfig config = markersMode();
  config.track_mode = kTracksFromRegions;
  const std::vector<Mark> marks = {
      {0.0, 20.0, "A"}, marker(30, "ISRC=USABC2600001"), {40.0, 60.0, "B"}};
  EXPECT_THAT(check(config, marks, kSecond * 120).warnings,
              ElementsAre(AllOf(HasSubstr("the ISRC \"USABC2600001\" lies in no track"),
                                HasSubstr("region"))));
}

TEST(Preflight, SaysWhichInputsIsrcsGoToATrackThatBeginsBefore) {
  const auto own_code = [](double at, int input) {
    Mark mark = marker(at, "ISRC=USABC260000" + std::to_string(input));
    mark.input = input;
    return mark;
  };
  const std::vector<Mark> marks = {marker(0, "A"), marker(3, "B"), own_code(3, 2), marker(60, "C"),
                                   own_code(59.9999, 3)};
  EXPECT_THAT(check(markersMode(), marks, kSecond * 120).warnings,
              Contains(AllOf(HasSubstr("the ISRC \"USABC2600002\" of input 2 goes to track 1,"),
                             HasSubstr("before"))));
  const std::vector<Mark> free = {marker(0, "A"), marker(3, "B"), marker(3, "ISRC=USABC2600002")};
  EXPECT_THAT(check(markersMode(), free, kSecond * 120).warnings,
              Not(Contains(HasSubstr("goes to track"))))
      << "whoever places a code by hand means the track it lies in";
}

TEST(Preflight, SaysWhichLettersCdTextLacks) {
  const std::vector<Mark> marks = {marker(0, "Caf\u00e9"), marker(0, "PERF=Dvo\u0159\u00e1k")};
  const auto warnings = [&](const HostProject& project) {
    PreflightFindings findings;
    checkCdTextLetters(project, planTracks(markersMode(), project.marks, kSecond * 60), findings);
    return findings.warnings;
  };
  EXPECT_THAT(warnings({{marks[0]}, {}}), IsEmpty()) << "ISO 8859-1 has it";
  EXPECT_THAT(warnings({marks, {}}),
              ElementsAre(HasSubstr("no letter \"\u0159\"; on the disc plain")));
  EXPECT_THAT(warnings({marks, {{"CUE:DISC_TITLE", "\u0141\u00f3d\u017a"}}}),
              ElementsAre(HasSubstr("no letter \"\u0141\", \"\u017a\" and \"\u0159\"; on")));
}

TEST(Preflight, SaysWhichTitlesAreLongerThanReadersTake) {
  EXPECT_THAT(check(markersMode(), {marker(0, std::string(80, 'x'))}, kSecond * 60).warnings,
              IsEmpty());
  EXPECT_THAT(check(markersMode(), {marker(0, std::string(81, 'x'))}, kSecond * 60).warnings,
              ElementsAre(HasSubstr("title of track 1")));
}

}  // namespace
}  // namespace velmor::render
