// Markers that split the stream into tracks, and those that do not.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

using Markers = RenderCase;

TEST_F(Markers, ATrackLeadInIsWrittenBeforeTheSecondTrack) {
  EXPECT_EQ(render({marker(10.0, "Two")}, 15 * kSecond, {.track_leadin_ms = 2000}),
            tracks({"  TRACK 01 AUDIO", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
                    "    TITLE \"Two\"", "    INDEX 00 00:10:00", "    INDEX 01 00:12:00"}));
  expectImage(file("disc.bin"),
              Image().signal(0, 441000).silence(88200).signal(441000, 15 * kSecond));
}

TEST_F(Markers, WithoutLeadInsATrackMayStartInsideASector) {
  EXPECT_EQ(render({marker(10.5, "Two")}, 12 * kSecond),
            tracks({"  TRACK 01 AUDIO", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
                    "    TITLE \"Two\"", "    INDEX 01 00:10:37"}));
  expectImage(file("disc.bin"), Image().signal(0, 12 * kSecond));
}

TEST_F(Markers, ALeadInThatIsNoWholeNumberOfSectorsIsPaddedToOne) {
  // 463050 frames of track 1 end half way into a sector; 1500 ms are 66150 frames.
  EXPECT_EQ(render({marker(10.5, "Two")}, 12 * kSecond, {.track_leadin_ms = 1500}),
            tracks({"  TRACK 01 AUDIO", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
                    "    TITLE \"Two\"", "    INDEX 00 00:11:00", "    INDEX 01 00:12:00"}));
  expectImage(
      file("disc.bin"),
      Image().signal(0, 463050).silence(66150).toSector().signal(463050, 12 * kSecond).toSector());
}

TEST_F(Markers, AMarkerUnderFourSecondsAfterATrackStartMakesNoTrack) {
  EXPECT_EQ(render({marker(5.0, "Five"), marker(7.0, "Seven")}, 12 * kSecond),
            tracks({"  TRACK 01 AUDIO", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
                    "    TITLE \"Five\"", "    INDEX 01 00:05:00"}));
  expectImage(file("disc.bin"), Image().signal(0, 12 * kSecond));
}

TEST_F(Markers, AMarkerUnderFourSecondsAfterTheStartMakesNoTrackWhateverTheDiscLeadIn) {
  for (const int leadin : {0, 500, 2000, 10000}) {
    const std::string sheet =
        render({marker(3.0, "Three")}, 8 * kSecond, {.disc_leadin_ms = leadin});
    EXPECT_THAT(sheet, testing::HasSubstr("TITLE \"Three\"")) << "it names track 1";
    EXPECT_THAT(sheet, testing::Not(testing::HasSubstr("TRACK 02"))) << leadin;
  }
}

TEST_F(Markers, AMarkerExactlyFourSecondsAfterATrackStartMakesATrack) {
  EXPECT_EQ(render({marker(5.0, "A"), marker(9.0, "B")}, 12 * kSecond),
            tracks({"  TRACK 01 AUDIO", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
                    "    TITLE \"A\"", "    INDEX 01 00:05:00", "  TRACK 03 AUDIO",
                    "    TITLE \"B\"", "    INDEX 01 00:09:00"}));
  EXPECT_THAT(render({marker(5.0, "A"), marker(9.0 - 1.0 / 44100, "B")}, 12 * kSecond),
              testing::Not(testing::HasSubstr("TRACK 03")));
}

TEST_F(Markers, TheDistanceCountsFromWhereTheTracksAudioBegins) {
  // Track 2 begins behind its lead-in: the silence does not count towards the four seconds.
  EXPECT_THAT(render({marker(5.0, "A"), marker(8.9, "B")}, 12 * kSecond, {.track_leadin_ms = 2000}),
              testing::Not(testing::HasSubstr("TRACK 03")));
  EXPECT_THAT(render({marker(5.0, "A"), marker(9.0, "B")}, 12 * kSecond, {.track_leadin_ms = 2000}),
              testing::HasSubstr("TRACK 03"));
}

TEST_F(Markers, TheMarkerThatNamedTrackOneAtFourSecondsAlsoSplits) {
  EXPECT_EQ(render({marker(4.0, "Four")}, 6 * kSecond),
            tracks({"  TRACK 01 AUDIO", "    TITLE \"Four\"", "    INDEX 01 00:00:00",
                    "  TRACK 02 AUDIO", "    TITLE \"Four\"", "    INDEX 01 00:04:00"}));
}

TEST_F(Markers, PaddingOfTheDiscLeadInCountsTowardsTheFourSeconds) {
  // Track 1 is told to start at 0.5 s; its audio begins at frame 22344, 294 frames later.
  const auto marker_at = [](int64_t frame) {
    return marker(static_cast<double>(frame) / 44100.0, "x");
  };
  const Settings settings = {.disc_leadin_ms = 500};
  EXPECT_THAT(render({marker_at(4 * kSecond - 294)}, 6 * kSecond, settings),
              testing::HasSubstr("TRACK 02"));
  EXPECT_THAT(render({marker_at(4 * kSecond - 295)}, 6 * kSecond, settings),
              testing::Not(testing::HasSubstr("TRACK 02")));
}

TEST_F(Markers, AMarkerAtABlockBoundaryBelongsToTheNextBlock) {
  // Every block ends at the marker, begins with it, or holds it as its last frame.
  const int64_t at = 5 * kSecond;
  for (const int length : {44100, 22050, 220500, 220501, 220499, 220500 * 2}) {
    EXPECT_EQ(render({marker(5.0, "Two")}, 10 * kSecond, {.track_leadin_ms = 1000},
                     {.lengths = {length}}),
              tracks({"  TRACK 01 AUDIO", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
                      "    TITLE \"Two\"", "    INDEX 00 00:05:00", "    INDEX 01 00:06:00"}))
        << length;
    expectImage(file("disc.bin"), Image().signal(0, at).silence(kSecond).signal(at, 10 * kSecond));
  }
}

TEST_F(Markers, AMarkerWhereTheRenderEndsMakesNoTrack) {
  render({marker(5.0, "End")}, 5 * kSecond, {.track_leadin_ms = 1000}, {.lengths = {4410}});
  EXPECT_THAT(readText(file("disc.cue")), testing::Not(testing::HasSubstr("TRACK 02")));
  expectImage(file("disc.bin"), Image().signal(0, 5 * kSecond));
}

TEST_F(Markers, APositionIsRoundedToTheNearestFrame) {
  struct Case {
    double frames;
    int64_t cut;
  };
  for (const Case& c : {Case{220500.4, 220500}, Case{220500.6, 220501}, Case{220499.6, 220500}}) {
    render({marker(c.frames / 44100.0, "Two")}, 6 * kSecond, {.track_leadin_ms = 1000});
    expectImage(
        file("disc.bin"),
        Image().signal(0, c.cut).silence(kSecond).toSector().signal(c.cut, 6 * kSecond).toSector());
  }
}

TEST_F(Markers, SeveralMarkersOfOneBlockEachMakeTheirTrack) {
  EXPECT_EQ(render({marker(4.0, "A"), marker(8.0, "B"), marker(12.0, "C")}, 16 * kSecond,
                   {.track_leadin_ms = 1000}, {.lengths = {16 * 44100}}),
            tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    INDEX 01 00:00:00",
                    "  TRACK 02 AUDIO", "    TITLE \"A\"", "    INDEX 00 00:04:00",
                    "    INDEX 01 00:05:00", "  TRACK 03 AUDIO", "    TITLE \"B\"",
                    "    INDEX 00 00:09:00", "    INDEX 01 00:10:00", "  TRACK 04 AUDIO",
                    "    TITLE \"C\"", "    INDEX 00 00:14:00", "    INDEX 01 00:15:00"}));
  expectImage(file("disc.bin"), Image()
                                    .signal(0, 4 * kSecond)
                                    .silence(kSecond)
                                    .signal(4 * kSecond, 8 * kSecond)
                                    .silence(kSecond)
                                    .signal(8 * kSecond, 12 * kSecond)
                                    .silence(kSecond)
                                    .signal(12 * kSecond, 16 * kSecond));
}

TEST_F(Markers, RegionsTagsAndTheStartItselfNeverSplit) {
  EXPECT_EQ(render({marker(0.0, "Start"), region(5.0, 6.0, "Region"), marker(5.1, "PERF=a"),
                    marker(5.2, "writ=b"), marker(5.3, "iSrC=c")},
                   12 * kSecond),
            tracks({"  TRACK 01 AUDIO", "    TITLE \"Start\"", "    PERFORMER \"a\"",
                    "    SONGWRITER \"b\"", "    ISRC \"c\"", "    INDEX 01 00:00:00"}));
}

TEST_F(Markers, AMarkerWithoutANameSplitsAndGetsNoTitle) {
  for (const std::optional<std::string>& name : {std::optional<std::string>(), {std::string()}}) {
    EXPECT_EQ(render({{.position = 5.0, .name = name}}, 12 * kSecond),
              tracks({"  TRACK 01 AUDIO", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
                      "    INDEX 01 00:05:00"}));
  }
}

TEST_F(Markers, WithTheHashOptionOnlyHashMarkersSplitAndLoseTheHash) {
  EXPECT_EQ(
      render({marker(0.0, "#One"), marker(5.0, "plain"), marker(6.0, std::nullopt),
              marker(7.0, "#Two"), marker(12.0, "##"), marker(17.0, "#"), marker(22.0, "#PERF=x")},
             26 * kSecond, {.hash_markers_only = 1}),
      tracks({"  TRACK 01 AUDIO", "    TITLE \"One\"", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
              "    TITLE \"Two\"", "    INDEX 01 00:07:00", "  TRACK 03 AUDIO", "    TITLE \"#\"",
              "    INDEX 01 00:12:00", "  TRACK 04 AUDIO", "    INDEX 01 00:17:00",
              "  TRACK 05 AUDIO", "    TITLE \"PERF=x\"", "    INDEX 01 00:22:00"}));
}

TEST_F(Markers, ANonZeroStartTimeMovesEveryMarker) {
  // Track 1's name was decided before the host could set the start.
  EXPECT_EQ(render({marker(95.0, "Before"), marker(100.0, "Start"), marker(105.0, "Two")},
                   12 * kSecond, {}, {}, 100.0),
            tracks({"  TRACK 01 AUDIO", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
                    "    TITLE \"Two\"", "    INDEX 01 00:05:00"}));
  EXPECT_EQ(render({marker(-5.0, "Two")}, 12 * kSecond, {}, {}, -10.0),
            tracks({"  TRACK 01 AUDIO", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
                    "    TITLE \"Two\"", "    INDEX 01 00:05:00"}));
}

TEST_F(Markers, OneListedOutOfOrderIsPassedOver) {
  const std::string sheet =
      render({marker(10.0, "Ten"), marker(5.0, "Five"), marker(15.0, "Fifteen")}, 20 * kSecond, {},
             {.lengths = {1024}});
  EXPECT_EQ(sheet, tracks({"  TRACK 01 AUDIO", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
                           "    TITLE \"Ten\"", "    INDEX 01 00:10:00", "  TRACK 03 AUDIO",
                           "    TITLE \"Fifteen\"", "    INDEX 01 00:15:00"}));
}

TEST_F(Markers, TheSecondOfTwoAtOnePlaceMakesNoTrack) {
  EXPECT_EQ(render({marker(5.0, "First"), marker(5.0, "Second")}, 12 * kSecond),
            tracks({"  TRACK 01 AUDIO", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
                    "    TITLE \"First\"", "    INDEX 01 00:05:00"}));
}

TEST_F(Markers, EachIsReadOnceAndTheNextOneOnceABlock) {
  host.marks = {marker(5.0, "a"), marker(20.0, "b")};
  Sink sink = createSink("disc.cue");
  host.marker_calls.clear();
  sink.writeSignal(6 * kSecond, {.lengths = {6 * 44100}});
  ASSERT_EQ(host.marker_calls.size(), 2U) << "the first splits, the second lies ahead";
  EXPECT_EQ(host.marker_calls[0].index, 0);
  const int second = host.marker_calls[1].index;
  host.marker_calls.clear();
  sink.writeSignal(kSecond, {.lengths = {44100}});
  ASSERT_EQ(host.marker_calls.size(), 1U);
  const fake_host::MarkerCall& call = host.marker_calls[0];
  EXPECT_EQ(call.index, second);
  EXPECT_TRUE(call.wants_region_flag && call.wants_position && call.wants_region_end &&
              call.wants_name);
  EXPECT_FALSE(call.wants_number);
}

TEST_F(Markers, MoreThanNinetyNineTracksAreNumberedOn) {
  std::vector<Mark> marks;
  for (int i = 1; i <= 100; ++i) marks.push_back(marker(4.0 * i, ""));
  host.marks = marks;
  Sink sink = createSink("disc.cue");
  sink.writeSame(404 * kSecond);
  sink.finish();
  const std::string sheet = readText(file("disc.cue"));
  EXPECT_THAT(sheet, testing::HasSubstr("  TRACK 09 AUDIO\r\n"));
  EXPECT_THAT(sheet, testing::HasSubstr("  TRACK 99 AUDIO\r\n"));
  EXPECT_THAT(sheet, testing::HasSubstr("  TRACK 100 AUDIO\r\n    INDEX 01 06:36:00\r\n"));
  EXPECT_THAT(sheet, testing::EndsWith("  TRACK 101 AUDIO\r\n    INDEX 01 06:40:00\r\n"));
}

}  // namespace
}  // namespace sink_test
