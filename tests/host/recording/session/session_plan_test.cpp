#include "host/recording/session/session_plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disc/failure.h"
#include "disc/units/disc_units.h"
#include "tests/host/recording/programme.h"

namespace velmor::recording::testing {
namespace {

using ::testing::HasSubstr;

std::string refusalOf(const Programme& programme) {
  try {
    planSession(programme.tracks.data(), programme.count());
  } catch (const Failure& refusal) {
    return refusal.what();
  }
  return "";
}

TEST(SessionPlan, TracksFollowEachOtherWithoutAGap) {
  const Programme programme({300, 4500, 301});
  const SessionPlan plan = planSession(programme.tracks.data(), programme.count());
  ASSERT_EQ(plan.tracks.size(), 3U);
  EXPECT_EQ(plan.tracks[0].start, 0);
  EXPECT_EQ(plan.tracks[1].start, 300);
  EXPECT_EQ(plan.tracks[2].start, 4800);
  EXPECT_EQ(plan.sectors, 5101);
}

TEST(SessionPlan, ASectorBelongsToTheTrackThatBeginsAtOrBeforeIt) {
  const Programme programme({300, 300});
  const SessionPlan plan = planSession(programme.tracks.data(), programme.count());
  EXPECT_EQ(plan.trackAt(0), 0);
  EXPECT_EQ(plan.trackAt(299), 0);
  EXPECT_EQ(plan.trackAt(300), 1);
  EXPECT_EQ(plan.trackAt(100'000), 1);
}

TEST(SessionPlan, APregapMovesItsTrackAndThoseAfterIt) {
  Programme programme({300, 300, 300});
  programme.tracks[1].pregap_length = 150;
  const SessionPlan plan = planSession(programme.tracks.data(), programme.count());
  EXPECT_EQ(plan.tracks[1].start, 450);
  EXPECT_EQ(plan.tracks[2].start, 750);
  EXPECT_EQ(plan.trackAt(300), 1);
}

TEST(SessionPlan, TheFirstTwoSecondsOfTrack1sPregapAreTheDiscsOwn) {
  Programme programme({300, 300});
  programme.tracks[0].pregap_length = 150;
  EXPECT_EQ(planSession(programme.tracks.data(), 2).tracks[0].start, 0);
  programme.tracks[0].pregap_length = 225;
  EXPECT_EQ(planSession(programme.tracks.data(), 2).tracks[0].start, 75);
}

TEST(SessionPlan, NoTracksAreNoDisc) {
  EXPECT_THROW(planSession(nullptr, 0), Failure);
  const Programme programme({300});
  EXPECT_THROW(planSession(programme.tracks.data(), 0), Failure);
}

TEST(SessionPlan, NinetyNineTracksAreTheMost) {
  const Programme most(std::vector<int>(99, 300));
  EXPECT_EQ(refusalOf(most), "");
  const Programme more(std::vector<int>(100, 300));
  EXPECT_THAT(refusalOf(more), HasSubstr("at most 99 tracks, and there are 100"));
}

TEST(SessionPlan, ATrackUnderFourSecondsIsRefusedAndNamed) {
  const Programme programme({300, 300, 299});
  EXPECT_THAT(refusalOf(programme), HasSubstr("track 3 is shorter than 4 seconds and would be "
                                              "padded, moving the tracks after it"));
}

TEST(SessionPlan, ATrackWithoutSectorsIsRefusedAndNamed) {
  const Programme empty({300, 0});
  EXPECT_THAT(refusalOf(empty), HasSubstr("nothing to record in track 2"));
}

TEST(SessionPlan, OnlyAudioSectorsAreTaken) {
  for (int DiscTrack::*field : {&DiscTrack::data_form, &DiscTrack::track_mode,
                                &DiscTrack::block_type, &DiscTrack::session_format}) {
    Programme programme({300});
    programme.tracks[0].*field = 1;
    EXPECT_THAT(refusalOf(programme), HasSubstr("only audio"));
  }
  Programme programme({300});
  programme.tracks[0].block_size = 2048;
  EXPECT_THAT(refusalOf(programme), HasSubstr("2352 bytes"));
}

TEST(SessionPlan, AProducerThatHasAnotherLengthIsRefused) {
  Programme programme({300});
  programme.producers[0]->estimate = 299;
  EXPECT_THAT(refusalOf(programme), HasSubstr("laid out with 300 sectors, but its audio has 299"));
}

TEST(SessionPlan, ATrackWithoutAProducerIsRefused) {
  Programme programme({300});
  programme.tracks[0].producer = nullptr;
  EXPECT_THAT(refusalOf(programme), HasSubstr("track 1"));
}

TEST(SessionPlan, TheLeadOutBeginsAtTheLatestWhereTheDiscsTimeEnds) {
  const Bytes none;
  ImageProducer producer(none, 0, size_t{404'849} * disc::kBytesPerSector);
  DiscTrack track{&producer, 0, 0, 0, 0, 0, disc::kBytesPerSector, 404'849};
  EXPECT_EQ(planSession(&track, 1).sectors, 404'849);
  producer.estimate = 404'850;
  track.track_length = 404'850;
  EXPECT_THROW(planSession(&track, 1), Failure);
}

}  // namespace
}  // namespace velmor::recording::testing
