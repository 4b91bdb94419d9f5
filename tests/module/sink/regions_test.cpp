// Regions that define the tracks: what lies outside is left out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

class Regions : public RenderCase {
 protected:
  std::string Render(const std::vector<Mark>& marks, int64_t frames, Settings settings = {},
                     const BlockSchedule& schedule = {}, double start = 0.0) {
    settings.track_mode = kTracksFromRegions;
    return RenderCase::Render(marks, frames, settings, schedule, start);
  }
};

TEST_F(Regions, OnlyTheirAudioIsWrittenEachAsATrack) {
  for (const int length : {1024, 44100, 88200, 22 * 44100, 997}) {
    EXPECT_EQ(Render({Region(2.0, 6.0, "A"), Region(8.0, 20.0, "B")}, 22 * kSecond, {},
                     {.lengths = {length}}),
              Tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    INDEX 01 00:00:00",
                      "  TRACK 02 AUDIO", "    TITLE \"B\"", "    INDEX 01 00:04:00"}))
        << length;
    ExpectImage(File("disc.bin"),
                Image().Signal(2 * kSecond, 6 * kSecond).Signal(8 * kSecond, 20 * kSecond));
  }
}

TEST_F(Regions, OneUnderFourSecondsAfterATrackStartJoinsItAndStillAddsItsName) {
  EXPECT_EQ(Render({Region(2.0, 4.0, "A"), Region(5.0, 10.0, "B"), Region(12.0, 18.0, "C")},
                   20 * kSecond),
            Tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    INDEX 01 00:00:00",
                    "  TRACK 02 AUDIO", "    TITLE \"B\"", "    INDEX 01 00:07:00"}))
      << "names run ahead of the tracks from here on";
  ExpectImage(File("disc.bin"), Image()
                                    .Signal(2 * kSecond, 4 * kSecond)
                                    .Signal(5 * kSecond, 10 * kSecond)
                                    .Signal(12 * kSecond, 18 * kSecond));
}

TEST_F(Regions, BothSourceEntriesOfAJoinedRegionAreRecorded) {
  // Track 2's tags are looked for in the second region's span, though it plays the third.
  EXPECT_EQ(
      Render({Region(2.0, 4.0, "A"), Region(5.0, 10.0, "B"), Marker(6.0, "PERF=in B"),
              Region(12.0, 18.0, "C"), Marker(13.0, "PERF=in C")},
             20 * kSecond),
      Tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    INDEX 01 00:00:00", "  TRACK 02 AUDIO",
              "    TITLE \"B\"", "    PERFORMER \"in B\"", "    INDEX 01 00:07:00"}));
}

TEST_F(Regions, LeadInsStandBeforeTheDiscAndBetweenTracks) {
  EXPECT_EQ(Render({Region(1.0, 6.0, "A"), Region(8.0, 13.0, "B")}, 15 * kSecond,
                   {.disc_leadin_ms = 2000, .track_leadin_ms = 1000}),
            Tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    INDEX 00 00:00:00",
                    "    INDEX 01 00:02:00", "  TRACK 02 AUDIO", "    TITLE \"B\"",
                    "    INDEX 00 00:07:00", "    INDEX 01 00:08:00"}));
  ExpectImage(File("disc.bin"), Image()
                                    .Silence(2 * kSecond)
                                    .Signal(kSecond, 6 * kSecond)
                                    .Silence(kSecond)
                                    .Signal(8 * kSecond, 13 * kSecond));
}

TEST_F(Regions, TrackOnesLeadInIsNotRepeatedForTheFirstRegion) {
  Render({Region(1.0, 6.0, "A")}, 7 * kSecond, {.track_leadin_ms = 1000});
  ExpectImage(File("disc.bin"), Image().Signal(kSecond, 6 * kSecond));
}

TEST_F(Regions, NamesAreTakenWhole) {
  EXPECT_EQ(Render({Region(0.0, 5.0, "#A"), Region(5.0, 10.0, "PERF=x"),
                    Region(10.0, 15.0, std::nullopt)},
                   15 * kSecond, {.hash_markers_only = 1}),
            Tracks({"  TRACK 01 AUDIO", "    TITLE \"#A\"", "    INDEX 01 00:00:00",
                    "  TRACK 02 AUDIO", "    TITLE \"PERF=x\"", "    PERFORMER \"x\"",
                    "    INDEX 01 00:05:00", "  TRACK 03 AUDIO", "    INDEX 01 00:10:00"}));
}

TEST_F(Regions, MarkersSplitNothing) {
  EXPECT_EQ(
      Render({Region(0.0, 12.0, "A"), Marker(5.0, "m"), Marker(6.0, "ISRC=i")}, 12 * kSecond),
      Tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    ISRC \"i\"", "    INDEX 01 00:00:00"}));
  ExpectImage(File("disc.bin"), Image().Signal(0, 12 * kSecond));
}

TEST_F(Regions, WithoutAnyTheImageIsEmpty) {
  EXPECT_EQ(Render({Marker(1.0, "m")}, 3 * kSecond),
            Tracks({"  TRACK 01 AUDIO", "    INDEX 01 00:00:00"}));
  EXPECT_EQ(fake_host::SizeOfFile(File("disc.bin")), 0);
}

TEST_F(Regions, OneThatTheRenderBeginsInsideOfIsWrittenFromTheStart) {
  Render({Region(98.0, 105.0, "A")}, 8 * kSecond, {}, {}, 100.0);
  ExpectImage(File("disc.bin"), Image().Signal(0, 5 * kSecond));
}

TEST_F(Regions, OneThatEndedBeforeTheRenderIsPassedOver) {
  EXPECT_THAT(
      Render({Region(90.0, 99.0, "Old"), Region(101.0, 106.0, "New")}, 8 * kSecond, {}, {}, 100.0),
      testing::HasSubstr("TITLE \"New\""));
  ExpectImage(File("disc.bin"), Image().Signal(kSecond, 6 * kSecond));
}

TEST_F(Regions, OneThatOutlastsTheRenderIsCutThere) {
  Render({Region(1.0, 50.0, "A")}, 6 * kSecond);
  ExpectImage(File("disc.bin"), Image().Signal(kSecond, 6 * kSecond));
}

TEST_F(Regions, TwoThatTouchGoOverWithoutAGap) {
  EXPECT_THAT(Render({Region(1.0, 6.0, "A"), Region(6.0, 11.0, "B")}, 12 * kSecond),
              testing::HasSubstr("  TRACK 02 AUDIO\r\n    TITLE \"B\"\r\n    INDEX 01 00:05:00"));
  ExpectImage(File("disc.bin"), Image().Signal(kSecond, 11 * kSecond));
}

TEST_F(Regions, AnOverlapIsWrittenOnce) {
  // The second begins while the first is still being written: it takes over at the first's end.
  EXPECT_EQ(Render({Region(0.0, 6.0, "A"), Region(4.0, 12.0, "B")}, 14 * kSecond),
            Tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    INDEX 01 00:00:00",
                    "  TRACK 02 AUDIO", "    TITLE \"B\"", "    INDEX 01 00:06:00"}));
  ExpectImage(File("disc.bin"), Image().Signal(0, 12 * kSecond));
}

TEST_F(Regions, OneInsideAnotherIsPassedOver) {
  EXPECT_EQ(Render({Region(0.0, 10.0, "A"), Region(2.0, 8.0, "Inside"), Region(11.0, 16.0, "B")},
                   18 * kSecond),
            Tracks({"  TRACK 01 AUDIO", "    TITLE \"A\"", "    INDEX 01 00:00:00",
                    "  TRACK 02 AUDIO", "    TITLE \"B\"", "    INDEX 01 00:10:00"}));
}

TEST_F(Regions, SeveralOfOneBlockAreAllWritten) {
  Render({Region(1.0, 2.0, "A"), Region(3.0, 4.0, "B"), Region(5.0, 6.0, "C")}, 8 * kSecond, {},
         {.lengths = {8 * 44100}});
  ExpectImage(File("disc.bin"), Image()
                                    .Signal(kSecond, 2 * kSecond)
                                    .Signal(3 * kSecond, 4 * kSecond)
                                    .Signal(5 * kSecond, 6 * kSecond));
}

TEST_F(Regions, OneThatBeginsOrEndsAtABlockBoundaryLosesNothing) {
  Render({Region(1.0, 5.0, "A"), Region(6.0, 11.0, "B")}, 12 * kSecond, {}, {.lengths = {44100}});
  ExpectImage(File("disc.bin"),
              Image().Signal(kSecond, 5 * kSecond).Signal(6 * kSecond, 11 * kSecond));
}

TEST_F(Regions, OneWithoutLengthLetsTheRestOfItsBlockThrough) {
  EXPECT_THAT(Render({Region(1.0, 1.0, "Nothing")}, 4 * kSecond, {}, {.lengths = {2 * 44100}}),
              testing::HasSubstr("TITLE \"Nothing\""));
  ExpectImage(File("disc.bin"), Image().Signal(kSecond, 2 * kSecond));
}

TEST_F(Regions, APositionIsRoundedToTheNearestFrame) {
  Render({Region(44100.6 / 44100.0, 88200.4 / 44100.0, "A")}, 3 * kSecond);
  ExpectImage(File("disc.bin"), Image().Signal(44101, 88200).ToSector());
}

TEST_F(Regions, TheirNumberIsNeverAskedFor) {
  Render({Region(1.0, 5.0, "A")}, 6 * kSecond);
  for (const fake_host::MarkerCall& call : host.marker_calls) EXPECT_FALSE(call.wants_number);
}

}  // namespace
}  // namespace sink_test
