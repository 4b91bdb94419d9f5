#include "host/render/album/album.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "host/render/album/render_range.h"
#include "host/render/options/usage_error.h"
#include "tests/host/render/plan/marks.h"

namespace velmor::render {
namespace {

using test::kSecond;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr double kOneFrame = 1.0 / 44100;

InputInfo input(const std::string& path, double seconds, const Tags& tags = {},
                std::vector<Mark> marks = {}) {
  InputInfo info;
  info.path = path;
  info.rate = 44100;
  info.channels = 2;
  info.bits = 16;
  info.frames = std::llround(seconds * kSecond);
  info.tags = tags;
  info.marks = std::move(marks);
  return info;
}

Tags tagged(const std::string& title, const std::string& artist = "", const std::string& album = "",
            const std::string& isrc = "") {
  Tags tags;
  tags.title = title;
  tags.artist = artist;
  tags.album = album;
  tags.isrc = isrc;
  return tags;
}

/// "0 One", "5-8 Region", in seconds; a position off its frame keeps its decimals.
std::string shown(const Mark& mark) {
  std::ostringstream text;
  text << mark.start;
  if (mark.end) text << '-' << *mark.end;
  text << ' ' << mark.name;
  return text.str();
}

std::vector<std::string> shown(const std::vector<Mark>& marks) {
  std::vector<std::string> texts;
  texts.reserve(marks.size());
  for (const Mark& mark : marks) texts.push_back(shown(mark));
  return texts;
}

std::vector<std::string> marksOf(const Options& options, std::vector<InputInfo> infos) {
  return shown(layOutAlbum(options, std::move(infos)).project.marks);
}

TEST(Album, EachInputBeginsATrackNamedByItsTitleOrItsFile) {
  const Album album =
      layOutAlbum({}, {input("/music/one.two.wav", 10), input("b.flac", 5.5, tagged("Second"))});
  EXPECT_THAT(shown(album.project.marks), ElementsAre("0 one.two", "10 Second"));
  EXPECT_EQ(album.inputs[1].start, 10 * kSecond);
  EXPECT_EQ(album.frames(), 15 * kSecond + kSecond / 2);
  EXPECT_THAT(album.project.metadata, IsEmpty());
  EXPECT_THAT(album.warnings, IsEmpty());
}

TEST(Album, InputsNamedLikeTagsStillBeginTracks) {
  EXPECT_THAT(marksOf({}, {input("PERF=x.wav", 10), input("b.wav", 9, tagged("isrc=song"))}),
              ElementsAre("0  PERF=x", "10  isrc=song"));
}

TEST(Album, InHashModeInputsTitlesStayAsTheyAre) {
  Options options;
  options.hash_markers_only = true;
  const auto marks = marksOf(options, {input("a.wav", 10, tagged("A"), {{5, {}, "no track"}}),
                                       input("b.wav", 10, tagged("#1"), {{0, {}, "plain"}}),
                                       input("c.wav", 10, {}, {{0, {}, "#C"}})});
  EXPECT_THAT(marks, ElementsAre("0 A", "5 no track", "10 #1", "10 plain", "20 #C"));
}

TEST(Album, InRegionsModeInputsAreRegions) {
  Options options;
  options.track_mode = kTracksFromRegions;
  EXPECT_THAT(marksOf(options, {input("a.wav", 10), input("b.wav", 5)}),
              ElementsAre("0-10 a", "10-15 b"));
}

TEST(Album, ARegionInsideAnInputTakesThePlaceOfItsOwn) {
  Options options;
  options.track_mode = kTracksFromRegions;
  EXPECT_THAT(marksOf(options, {input("a.wav", 10, {}, {{2, 8, "inside"}, {1, {}, "marker"}}),
                                input("b.wav", 5)}),
              ElementsAre("1 marker", "2-8 inside", "10-15 b"));
  options.embedded_markers = false;
  EXPECT_THAT(marksOf(options, {input("a.wav", 10, {}, {{2, 8, "inside"}})}),
              ElementsAre("0-10 a"));
}

TEST(Album, InOneTrackModeThereAreNoTrackMarks) {
  Options options;
  options.track_mode = kOneTrack;
  EXPECT_THAT(marksOf(options, {input("a.wav", 10), input("b.wav", 5)}), IsEmpty());
}

TEST(Album, AMarkWithinFourSecondsOfAnInputsStartTakesThePlaceOfItsOwn) {
  for (const double off : {-4 + kOneFrame, -kOneFrame, 0.0, kOneFrame, 4 - kOneFrame}) {
    Options options;
    options.marks = {{10 + off, {}, "given"}};
    const auto marks = marksOf(options, {input("a.wav", 10), input("b.wav", 5)});
    ASSERT_EQ(marks.size(), 2U) << off;
    EXPECT_THAT(marks[1], HasSubstr("given"));
  }
  Options options;
  for (const double off : {-4.0, 4.0}) {
    options.marks = {{10 + off, {}, "given"}};
    EXPECT_EQ(marksOf(options, {input("a.wav", 10), input("b.wav", 5)}).size(), 3U) << off;
  }
  EXPECT_THAT(marksOf({}, {input("a.wav", 10), input("b.wav", 5, {}, {{0, {}, "cue"}})}),
              ElementsAre("0 a", "10 cue"));
}

TEST(Album, AMarkThatMakesNoTrackItselfTakesNoPlace) {
  Options options;
  options.marks = {{6, {}, "A"}, {8.5, {}, "too near to A"}};
  EXPECT_THAT(marksOf(options, {input("a.wav", 11), input("b.wav", 9)}),
              ElementsAre("0 a", "6 A", "8.5 too near to A", "11 b"));
  options.hash_markers_only = true;
  options.marks = {{9, {}, "no hash"}, {20, {}, "#hash"}};
  EXPECT_THAT(marksOf(options, {input("a.wav", 10), input("b.wav", 9), input("c.wav", 9)}),
              ElementsAre("0 a", "9 no hash", "10 b", "20 #hash"));
}

TEST(Album, OnlyAMarkThatBeginsATrackTakesThePlaceOfAnInputsOwn) {
  Options options;
  options.track_mode = kTracksFromMarkers;
  EXPECT_THAT(marksOf(options, {input("a.wav", 10, {}, {{0, {}, "PERF=Ana"}, {0, 5, "region"}})}),
              ElementsAre("0 a", "0 PERF=Ana", "0-5 region"));
}

TEST(Album, MarksInsideAnInputLieWhereTheInputDoes) {
  EXPECT_THAT(
      marksOf({}, {input("a.wav", 10), input("b.wav", 20, {}, {{5, {}, "m"}, {6, 9, "r"}})}),
      ElementsAre("0 a", "10 b", "15 m", "16-19 r"));
  Options options;
  options.embedded_markers = false;
  EXPECT_THAT(marksOf(options, {input("a.wav", 10, {}, {{3, {}, "m"}})}), ElementsAre("0 a"));
}

TEST(Album, AnArtistWhoIsNotTheDiscsPerformerIsNamedForTheTrack) {
  Options options;
  options.texts.performer = "The Lanterns";
  EXPECT_THAT(marksOf(options, {input("a.wav", 10, tagged("A", "The Lanterns")),
                                input("b.wav", 10, tagged("B", "Ana")), input("c.wav", 10)}),
              ElementsAre("0 A", "10 B", "10 PERF=Ana", "20 c"));
}

TEST(Album, WhatAllInputsShareBecomesTheDiscs) {
  const Album same = layOutAlbum({}, {input("a.wav", 10, tagged("A", "Ana", "Disc")),
                                      input("b.wav", 10, tagged("B", "Ana", "Disc"))});
  EXPECT_THAT(same.project.metadata, ElementsAre(std::pair("CUE:DISC_TITLE", "Disc"),
                                                 std::pair("CUE:DISC_PERFORMER", "Ana")));
  EXPECT_THAT(shown(same.project.marks), ElementsAre("0 A", "10 B"));
  const Album differ = layOutAlbum(
      {}, {input("a.wav", 10, tagged("A", "Ana", "Disc")), input("b.wav", 10, tagged("B", "Bo"))});
  EXPECT_THAT(differ.project.metadata, IsEmpty()) << "the title is not the first track's";
  EXPECT_THAT(shown(differ.project.marks), ElementsAre("0 A", "0 PERF=Ana", "10 B", "10 PERF=Bo"));
}

TEST(Album, WhatIsGivenWinsOverTags) {
  Options options;
  options.texts = {"Title", "Performer", "Writer", "0731452345622", "Remark", {}};
  options.texts.more = {{"GENRE", "Folk"}, {"CUE:DISC_X", "whole key"}};
  const Album album = layOutAlbum(options, {input("a.wav", 10, tagged("A", "Ana", "Disc"))});
  EXPECT_THAT(album.project.metadata,
              ElementsAre(std::pair("CUE:DISC_TITLE", "Title"),
                          std::pair("CUE:DISC_PERFORMER", "Performer"),
                          std::pair("CUE:DISC_SONGWRITER", "Writer"),
                          std::pair("CUE:DISC_CATALOG", "0731452345622"),
                          std::pair("CUE:DISC_REM", "Remark"), std::pair("CUE:DISC_GENRE", "Folk"),
                          std::pair("CUE:DISC_X", "whole key")));
}

TEST(Album, AnIsrcGoesToItsInputAndWinsOverTheTag) {
  Options options;
  options.isrcs = {{2, "USABC2600002"}};
  EXPECT_THAT(marksOf(options, {input("a.wav", 10, tagged("A", "", "", "GBXYZ2600009")),
                                input("b.wav", 10, tagged("B", "", "", "GBXYZ2600008"))}),
              ElementsAre("0 A", "0 ISRC=GBXYZ2600009", "10 B", "10 ISRC=USABC2600002"));
}

TEST(Album, InOneTrackModeTheInputThatTheRangeCutsGivesTheTrackItsIsrc) {
  Options options;
  options.track_mode = kOneTrack;
  options.isrcs = {{1, "USABC2600001"}, {2, "USABC2600002"}, {3, "USABC2600003"}};
  options.start = 12;
  const auto infos = [] {
    return std::vector<InputInfo>{input("a.wav", 10), input("b.wav", 10), input("c.wav", 10)};
  };
  EXPECT_THAT(marksOf(options, infos()), ElementsAre("0 ISRC=USABC2600002", "8 ISRC=USABC2600003"));
  options.isrcs.erase(2);
  EXPECT_THAT(marksOf(options, infos()), ElementsAre("8 ISRC=USABC2600003"))
      << "the code of an input that is not on the disc";
}

TEST(Album, AnInputsCodesFollowTheRegionThatTakesItsPlace) {
  Options options;
  options.track_mode = kTracksFromRegions;
  options.isrcs = {{1, "USABC2600001"}};
  options.marks = {{2, 9, "given"}};
  EXPECT_THAT(marksOf(options, {input("a.wav", 10, tagged("A", "Ana")),
                                input("b.wav", 10, tagged("B", "Bo"))}),
              UnorderedElementsAre("2-9 given", "2 PERF=Ana", "2 ISRC=USABC2600001", "10-20 B",
                                   "10 PERF=Bo"));
}

TEST(Album, TextsThatWouldBreakTheSheetAreChangedAndSaid) {
  Options options;
  options.texts.title = "Say \"Go\"";
  const Album album = layOutAlbum(options, {input("a\nb.wav", 10)});
  EXPECT_THAT(album.project.metadata, ElementsAre(std::pair("CUE:DISC_TITLE", "Say 'Go'")));
  EXPECT_THAT(shown(album.project.marks), ElementsAre("0 a b"));
  EXPECT_EQ(album.warnings.size(), 2U);
}

TEST(Album, RangesAloneMakeTheTracksUnlessTheModeIsGiven) {
  Options options;
  options.marks = {{1, 6, "A"}, {7, 8, "ISRC=x"}, {2, {}, "PERF=Ana"}};
  const Album ranges = layOutAlbum(options, {input("a.wav", 10), input("b.wav", 5)});
  EXPECT_EQ(ranges.track_mode, kTracksFromRegions);
  EXPECT_THAT(ranges.warnings, ElementsAre(HasSubstr("--track-mode markers keeps all audio")));
  options.track_mode = kTracksFromMarkers;
  const Album given = layOutAlbum(options, {input("a.wav", 10)});
  EXPECT_EQ(given.track_mode, kTracksFromMarkers);
  EXPECT_THAT(given.warnings, IsEmpty());
  options.track_mode.reset();
  options.marks.push_back({9, {}, "point"});
  EXPECT_EQ(layOutAlbum(options, {input("a.wav", 10)}).track_mode, kTracksFromMarkers);
  EXPECT_EQ(layOutAlbum({}, {input("a.wav", 10, {}, {{2, 9, "cue"}})}).track_mode,
            kTracksFromRegions)
      << "a file's own ranges";
}

TEST(Album, ATimeThatMayBeHoursInsideTheAlbumIsRefused) {
  Options options;
  options.two_faced_times = {{"01:02:03", 62.04, 3723.0}};
  EXPECT_NO_THROW(layOutAlbum(options, {input("a.wav", 3723)}));
  try {
    layOutAlbum(options, {input("a.wav", 3724)});
    FAIL();
  } catch (const UsageError& error) {
    EXPECT_THAT(error.what(), HasSubstr("\"01:02:03\" may be hours"));
    EXPECT_THAT(error.what(), HasSubstr("give 1:02:03.000 or 62:03:00 for the one, 1:02.040 for"));
  }
}

TEST(Album, ARangeOutsideTheTimelineIsWrongUsage) {
  const auto refusal = [](std::optional<double> start, std::optional<double> end) -> std::string {
    Options options;
    options.start = start;
    options.end = end;
    try {
      layOutAlbum(options, {input("a.wav", 10)});
    } catch (const UsageError& error) {
      return error.what();
    }
    return {};
  };
  EXPECT_THAT(refusal(10.0, {}), HasSubstr("--start lies at 0:10.000"));
  EXPECT_THAT(refusal(1e300, {}), HasSubstr("--start"));
  EXPECT_THAT(refusal({}, 0.0), HasSubstr("nothing to render"));
  EXPECT_THAT(refusal(5.0, 5.000001), HasSubstr("nothing to render"));
  EXPECT_EQ(refusal(9.9, 1e300), "") << "an end behind the audio is its end";
}

/// The marks of a range, without those that are left out.
std::vector<std::string> inRange(const std::vector<Mark>& marks, int64_t start, int64_t end,
                                 TrackMode mode, bool hash_only = false) {
  std::vector<Mark> left_out;
  return shown(marksInRange(marks, start, end, mode, hash_only, left_out));
}

TEST(RenderRange, TheMarkerInForceMovesToTheStartWithTheTagsBehindIt) {
  Options options;
  options.start = 15;
  options.end = 45;
  options.isrcs = {{1, "USABC2600001"}, {2, "USABC2600002"}};
  const Album album = layOutAlbum(
      options, {input("a.wav", 10, tagged("A", "Ana")), input("b.wav", 20, tagged("B", "Bo")),
                input("c.wav", 10), input("d.wav", 10), input("e.wav", 10)});
  EXPECT_THAT(shown(album.project.marks),
              ElementsAre("0 B", "0 PERF=Bo", "0 ISRC=USABC2600002", "15 c", "25 d"));
  EXPECT_EQ(album.frames(), 30 * kSecond);
}

TEST(RenderRange, AMarkerAtTheStartIsInForceThere) {
  EXPECT_THAT(inRange({{0, {}, "A"}, {0, {}, "PERF=Ana"}, {10, {}, "B"}}, 10 * kSecond,
                      20 * kSecond, kTracksFromMarkers),
              ElementsAre("0 B"));
}

TEST(RenderRange, InHashModeOnlyAHashMarkerIsInForce) {
  EXPECT_THAT(
      inRange({{0, {}, "#A"}, {5, {}, "B"}}, 8 * kSecond, 20 * kSecond, kTracksFromMarkers, true),
      ElementsAre("0 #A"));
}

TEST(RenderRange, RegionsAreCutToIt) {
  EXPECT_THAT(inRange({{0, 5, "before"},
                       {2, 12, "into"},
                       {12, 14, "inside"},
                       {15, 30, "out of"},
                       {0, 40, "around"},
                       {20, 22, "behind"}},
                      5 * kSecond, 20 * kSecond, kTracksFromMarkers),
              ElementsAre("0-7 into", "7-9 inside", "10-15 out of", "0-15 around"));
}

TEST(RenderRange, TheTagsOfARegionThatIsCutMoveWithIt) {
  const std::vector<Mark> marks = {
      {0, 4, "A"}, {0, {}, "PERF=Ana"}, {4, 9, "B"}, {4, {}, "PERF=Bo"}};
  EXPECT_THAT(inRange(marks, 5 * kSecond, 20 * kSecond, kTracksFromRegions),
              ElementsAre("0-4 B", "0 PERF=Bo"));
}

TEST(RenderRange, CutsThePausesThatItBeginsIn) {
  const auto marked = [](double at, double before, double behind) {
    Mark mark{at, std::nullopt, "A"};
    mark.pause_before = before;
    mark.pause_behind = behind;
    return std::vector<Mark>{mark};
  };
  const auto cut = [](std::vector<Mark> marks) {
    std::vector<Mark> left_out;
    marks = marksInRange(std::move(marks), 8 * kSecond, 60 * kSecond, kTracksFromMarkers, false,
                         left_out);
    return std::pair(marks.at(0).pause_before, marks.at(0).pause_behind);
  };
  EXPECT_EQ(cut(marked(10, 6, 3)), std::pair(2.0, 3.0));
  EXPECT_EQ(cut(marked(10, 2, 0)), std::pair(2.0, 0.0));
  EXPECT_EQ(cut(marked(8, 6, 3)), std::pair(0.0, 3.0));
  EXPECT_EQ(cut(marked(7, 6, 3)), std::pair(0.0, 2.0));
  EXPECT_EQ(cut(marked(4, 6, 3)), std::pair(0.0, 0.0));
}

TEST(RenderRange, HandsOutWhatItLeavesOutWhereItLay) {
  std::vector<Mark> left_out;
  marksInRange({{0, {}, "A"}, {1, {}, "PERF=x"}, {2, {}, "in force"}, {2, 5, "R"}, {20, {}, "end"}},
               5 * kSecond, 20 * kSecond, kTracksFromMarkers, false, left_out);
  EXPECT_THAT(shown(left_out), ElementsAre("0 A", "1 PERF=x", "2-5 R", "20 end"));
}

/// Marks as a person gives them on the command line.
std::vector<Mark> given(std::vector<Mark> marks) {
  for (Mark& mark : marks) mark.given_by = mark.end ? "--region" : "--marker";
  return marks;
}

std::vector<std::string> warningsOf(const Options& options) {
  return layOutAlbum(options, {input("a.wav", 10, {}, {{9.5, {}, "its own"}}), input("b.wav", 10)})
      .warnings;
}

TEST(RenderRange, GivenMarksBeyondTheAudioAreNamed) {
  Options options;
  options.marks = given({{20, {}, "at the end"}, {19.9, {}, "before it"}, {99, {}, "PERF=x"}});
  EXPECT_THAT(
      warningsOf(options),
      ElementsAre("\"at the end\" (--marker) and \"PERF=x\" (--marker) lie beyond the end of "
                  "the audio at 0:20.000 and are left out; look at the times"));
  options.marks = given({{99, {}, "late"}});
  EXPECT_THAT(warningsOf(options), ElementsAre(HasSubstr("\"late\" (--marker) lies beyond")));
  options.hash_markers_only = true;
  EXPECT_THAT(warningsOf(options), IsEmpty()) << "it would make no track anyway";
  options.track_mode = kTracksFromRegions;
  EXPECT_THAT(warningsOf(options), IsEmpty());
}

TEST(RenderRange, ARegionThatReachesBeyondTheAudioIsNamed) {
  Options options;
  options.track_mode = kTracksFromRegions;
  options.marks = given({{5, 20.5, "long"}, {20, 22, "late"}});
  EXPECT_THAT(warningsOf(options),
              ElementsAre(HasSubstr("\"late\" (--region) lies beyond the end"),
                          HasSubstr("\"long\" (--region) reaches beyond the end of the audio at "
                                    "0:20.000 and is cut there")));
  options.marks = given({{5, 20 + 500 * kOneFrame, "a sector at most"}});
  EXPECT_THAT(warningsOf(options), IsEmpty());
  options.track_mode = kTracksFromMarkers;
  options.marks = given({{5, 20.5, "no track"}});
  EXPECT_THAT(warningsOf(options), IsEmpty());
}

TEST(RenderRange, GivenMarksOutsideStartAndEndAreNamedAndInputsAreNot) {
  Options options;
  options.marks = given({{1, {}, "one"}, {9, {}, "in force"}, {15, {}, "late"}});
  options.start = 9.25;
  options.end = 15;
  EXPECT_THAT(
      warningsOf(options),
      ElementsAre("\"one\" (--marker) and \"late\" (--marker) lie outside the part from "
                  "0:09.250 to 0:15.000 and are left out; --start and --end set that part"));
  options.embedded_markers = false;
  options.marks.clear();
  EXPECT_THAT(warningsOf(options), IsEmpty());
}

TEST(RenderRange, AnEndPastTheInputsIsSaid) {
  Options options;
  options.end = 20;
  EXPECT_THAT(warningsOf(options), IsEmpty());
  options.end = 25;
  EXPECT_THAT(warningsOf(options),
              ElementsAre("--end lies at 0:25.000, but the inputs end at 0:20.000, and so does the "
                          "render"));
}

TEST(RenderRange, RegionsWithoutAudioOfTheirOwnAreLeftOutAndNamed) {
  std::vector<Mark> marks = {
      {0, 10, "A"}, {2, {}, "m"}, {3, 9, "inside"}, {5, 12, "B"}, {13, 13, "empty"}};
  const std::vector<Mark> empty = takeEmptyRegions(marks);
  EXPECT_THAT(shown(marks), ElementsAre("0-10 A", "2 m", "5-12 B"));
  EXPECT_THAT(shown(empty), ElementsAre("3-9 inside", "13-13 empty"));
}

}  // namespace
}  // namespace velmor::render
