// Regions that define the tracks: what lies outside is left out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

class Regions : public RenderCase {
 protected:
  std::string render(const std::vector<Mark>& marks, int64_t frames, Settings settings = {},
                     const BlockSchedule& schedule = {}, double start = 0.0) {
    settings.track_mode = kTracksFromRegions;
    return RenderCase::render(marks, frames, settings, schedule, start);
  }
};

TEST_F(Regions, OnlyTheirAudioIsWrittenEachAsATrack) {
  for (const int length : {1024, 44100, 88200, 22 * 44100, 997}) {
    EXPECT_EQ(render({region(2.0, 6.0, "A"), region(8.0, 20.0, "B")}, 22 * kSecond, {},
                     {.lengths = {length}}),
              tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    INDEX 01 00:00:00",
                      "  TRACK 02 AUDIO", "    TITLE \"B\"", "    INDEX 01 00:04:00"}))
        << length;
    expectImage(file("disc.bin"),
                Image().signal(2 * kSecond, 6 * kSecond).signal(8 * kSecond, 20 * kSecond));
  }
}

TEST_F(Regions, OneUnderFourSecondsAfterATrackStartJoinsItAndStillAddsItsName) {
  EXPECT_EQ(render({region(2.0, 4.0, "A"), region(5.0, 10.0, "B"), region(12.0, 18.0, "C")},
                   20 * kSecond),
            tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    INDEX 01 00:00:00",
                    "  TRACK 02 AUDIO", "    TITLE \"B\"", "    INDEX 01 00:07:00"}))
      << "names run ahead of the tracks from here on";
  expectImage(file("disc.bin"), Image()
                                    .signal(2 * kSecond, 4 * kSecond)
                                    .signal(5 * kSecond, 10 * kSecond)
                                    .signal(12 * kSecond, 18 * kSecond));
}

TEST_F(Regions, OneExactlyFourSecondsAfterATrackStartBeginsItsOwn) {
  const Mark next = region(8.0, 12.0, "B");
  EXPECT_THAT(render({region(2.0, 6.0, "A"), next}, 14 * kSecond), testing::HasSubstr("TRACK 02"));
  EXPECT_THAT(render({region(2.0, 6.0 - 1.0 / 44100, "A"), next}, 14 * kSecond),
              testing::Not(testing::HasSubstr("TRACK 02")));
}

TEST_F(Regions, BothSourceEntriesOfAJoinedRegionAreRecorded) {
  // Track 2's tags are looked for in the second region's span, though it plays the third.
  EXPECT_EQ(
      render({region(2.0, 4.0, "A"), region(5.0, 10.0, "B"), marker(6.0, "PERF=in B"),
              region(12.0, 18.0, "C"), marker(13.0, "PERF=in C")},
             20 * kSecond),
      tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
              "    TITLE \"B\"", "    PERFORMER \"in B\"", "    INDEX 01 00:07:00"}));
}

TEST_F(Regions, LeadInsStandBeforeTheDiscAndBetweenTracks) {
  EXPECT_EQ(render({region(1.0, 6.0, "A"), region(8.0, 13.0, "B")}, 15 * kSecond,
                   {.disc_leadin_ms = 2000, .track_leadin_ms = 1000}),
            tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    INDEX 00 00:00:00",
                    "    INDEX 01 00:02:00", "  TRACK 02 AUDIO", "    TITLE \"B\"",
                    "    INDEX 00 00:07:00", "    INDEX 01 00:08:00"}));
  expectImage(file("disc.bin"), Image()
                                    .silence(2 * kSecond)
                                    .signal(kSecond, 6 * kSecond)
                                    .silence(kSecond)
                                    .signal(8 * kSecond, 13 * kSecond));
}

TEST_F(Regions, TrackOnesLeadInIsNotRepeatedForTheFirstRegion) {
  render({region(1.0, 6.0, "A")}, 7 * kSecond, {.track_leadin_ms = 1000});
  expectImage(file("disc.bin"), Image().signal(kSecond, 6 * kSecond));
}

TEST_F(Regions, NamesAreTakenWhole) {
  EXPECT_EQ(render({region(0.0, 5.0, "#A"), region(5.0, 10.0, "PERF=x"),
                    region(10.0, 15.0, std::nullopt)},
                   15 * kSecond, {.hash_markers_only = 1}),
            tracks({"  TRACK 01 AUDIO", "    TITLE \"#A\"", "    INDEX 01 00:00:00",
                    "  TRACK 02 AUDIO", "    TITLE \"PERF=x\"", "    PERFORMER \"x\"",
                    "    INDEX 01 00:05:00", "  TRACK 03 AUDIO", "    INDEX 01 00:10:00"}));
}

TEST_F(Regions, MarkersSplitNothing) {
  EXPECT_EQ(
      render({region(0.0, 12.0, "A"), marker(5.0, "m"), marker(6.0, "ISRC=i")}, 12 * kSecond),
      tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    ISRC \"i\"", "    INDEX 01 00:00:00"}));
  expectImage(file("disc.bin"), Image().signal(0, 12 * kSecond));
}

TEST_F(Regions, WithoutAnyTheImageIsEmpty) {
  EXPECT_EQ(render({marker(1.0, "m")}, 3 * kSecond),
            tracks({"  TRACK 01 AUDIO", "    INDEX 01 00:00:00"}));
  EXPECT_EQ(fake_host::sizeOfFile(file("disc.bin")), 0);
}

TEST_F(Regions, OneThatTheRenderBeginsInsideOfIsWrittenFromTheStart) {
  render({region(98.0, 105.0, "A")}, 8 * kSecond, {}, {}, 100.0);
  expectImage(file("disc.bin"), Image().signal(0, 5 * kSecond));
}

TEST_F(Regions, OneThatEndedBeforeTheRenderIsPassedOver) {
  EXPECT_THAT(
      render({region(90.0, 99.0, "Old"), region(101.0, 106.0, "New")}, 8 * kSecond, {}, {}, 100.0),
      testing::HasSubstr("TITLE \"New\""));
  expectImage(file("disc.bin"), Image().signal(kSecond, 6 * kSecond));
}

TEST_F(Regions, OneThatEndsExactlyWhereTheRenderBeginsIsTheFirst) {
  // It lets its block through, and the next region begins the second track.
  for (const double start : {0.0, 100.0}) {
    EXPECT_EQ(render({region(start - 2.0, start, "Over"), region(start + 6.0, start + 12.0, "B")},
                     15 * kSecond, {}, {.lengths = {5 * 44100}}, start),
              tracks({"  TRACK 01 AUDIO", "    TITLE \"Over\"", "    INDEX 01 00:00:00",
                      "  TRACK 02 AUDIO", "    TITLE \"B\"", "    INDEX 01 00:05:00"}))
        << start;
    expectImage(file("disc.bin"), Image().signal(0, 5 * kSecond).signal(6 * kSecond, 12 * kSecond));
  }
}

TEST_F(Regions, OneThatEndsTwoFramesBeforeTheRenderIsOver) {
  EXPECT_EQ(render({region(-2.0, -2.0 / 44100, "Over"), region(1.0, 6.0, "A")}, 8 * kSecond),
            tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    INDEX 01 00:00:00"}));
  expectImage(file("disc.bin"), Image().signal(kSecond, 6 * kSecond));
}

TEST_F(Regions, OneThatOutlastsTheRenderIsCutThere) {
  render({region(1.0, 50.0, "A")}, 6 * kSecond);
  expectImage(file("disc.bin"), Image().signal(kSecond, 6 * kSecond));
}

TEST_F(Regions, TwoThatTouchGoOverWithoutAGap) {
  EXPECT_THAT(render({region(1.0, 6.0, "A"), region(6.0, 11.0, "B")}, 12 * kSecond),
              testing::HasSubstr("  TRACK 02 AUDIO\r\n    TITLE \"B\"\r\n    INDEX 01 00:05:00"));
  expectImage(file("disc.bin"), Image().signal(kSecond, 11 * kSecond));
}

TEST_F(Regions, AnOverlapIsWrittenOnce) {
  // The second begins while the first is still being written: it takes over at the first's end.
  EXPECT_EQ(render({region(0.0, 6.0, "A"), region(4.0, 12.0, "B")}, 14 * kSecond),
            tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    INDEX 01 00:00:00",
                    "  TRACK 02 AUDIO", "    TITLE \"B\"", "    INDEX 01 00:06:00"}));
  expectImage(file("disc.bin"), Image().signal(0, 12 * kSecond));
}

TEST_F(Regions, OneInsideAnotherIsPassedOver) {
  EXPECT_EQ(render({region(0.0, 10.0, "A"), region(2.0, 8.0, "Inside"), region(11.0, 16.0, "B")},
                   18 * kSecond),
            tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    INDEX 01 00:00:00",
                    "  TRACK 02 AUDIO", "    TITLE \"B\"", "    INDEX 01 00:10:00"}));
}

TEST_F(Regions, SeveralOfOneBlockAreAllWritten) {
  render({region(1.0, 2.0, "A"), region(3.0, 4.0, "B"), region(5.0, 6.0, "C")}, 8 * kSecond, {},
         {.lengths = {8 * 44100}});
  expectImage(file("disc.bin"), Image()
                                    .signal(kSecond, 2 * kSecond)
                                    .signal(3 * kSecond, 4 * kSecond)
                                    .signal(5 * kSecond, 6 * kSecond));
}

TEST_F(Regions, OneThatBeginsOrEndsAtABlockBoundaryLosesNothing) {
  render({region(1.0, 5.0, "A"), region(6.0, 11.0, "B")}, 12 * kSecond, {}, {.lengths = {44100}});
  expectImage(file("disc.bin"),
              Image().signal(kSecond, 5 * kSecond).signal(6 * kSecond, 11 * kSecond));
}

TEST_F(Regions, OneWithoutLengthLetsTheRestOfItsBlockThrough) {
  EXPECT_THAT(render({region(1.0, 1.0, "Nothing")}, 4 * kSecond, {}, {.lengths = {2 * 44100}}),
              testing::HasSubstr("TITLE \"Nothing\""));
  expectImage(file("disc.bin"), Image().signal(kSecond, 2 * kSecond));
}

TEST_F(Regions, APositionIsRoundedToTheNearestFrame) {
  render({region(44100.6 / 44100.0, 88200.4 / 44100.0, "A")}, 3 * kSecond);
  expectImage(file("disc.bin"), Image().signal(44101, 88200).toSector());
}

TEST_F(Regions, TheirNumberIsNeverAskedFor) {
  render({region(1.0, 5.0, "A")}, 6 * kSecond);
  for (const fake_host::MarkerCall& call : host.marker_calls) EXPECT_FALSE(call.wants_number);
}

}  // namespace
}  // namespace sink_test
