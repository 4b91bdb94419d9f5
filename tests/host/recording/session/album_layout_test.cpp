#include "host/recording/session/album_layout.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disc/failure.h"
#include "disc/units/disc_units.h"
#include "host/recording/session/sector_feed.h"
#include "tests/host/recording/programme.h"

namespace velmor::recording::testing {
namespace {

using ::testing::HasSubstr;

SessionPlan cut(const Programme& programme, const std::vector<TrackPlace>& layout) {
  SessionPlan plan = planSession(programme.tracks.data(), programme.count());
  cutByLayout(plan, layout);
  return plan;
}

std::string refusalOf(const Programme& programme, const std::vector<TrackPlace>& layout) {
  try {
    cut(programme, layout);
  } catch (const Failure& refusal) {
    return refusal.what();
  }
  return "";
}

TEST(AlbumLayout, APauseBelongsToTheTrackThatItPrecedes) {
  const SessionPlan plan = cut(Programme({400, 600}), {{std::nullopt, 0}, {325, 400}});
  EXPECT_EQ(plan.tracks[0].sectors, 325);
  EXPECT_EQ(plan.tracks[0].pregap, 0);
  EXPECT_EQ(plan.tracks[1].pregap, 75);
  EXPECT_EQ(plan.tracks[1].sectors, 600);
  EXPECT_EQ(plan.tracks[1].start, 400);
  EXPECT_EQ(plan.sectors, 1000);
  EXPECT_EQ(plan.trackAt(324), 0);
  EXPECT_EQ(plan.trackAt(325), 1);
}

TEST(AlbumLayout, WhatPrecedesTrack1IsItsPregapWithOrWithoutAnIndex00) {
  for (const std::optional<int64_t> pause : {std::optional<int64_t>(0), std::optional<int64_t>()}) {
    const SessionPlan plan = cut(Programme({700}), {{pause, 150}});
    EXPECT_EQ(plan.tracks[0].pregap, 150);
    EXPECT_EQ(plan.tracks[0].start, 150);
    EXPECT_EQ(plan.tracks[0].sectors, 550);
  }
}

TEST(AlbumLayout, TheAudioStaysInItsOrderAcrossTheCuts) {
  Programme programme({400, 600});
  programme.tracks[1].pregap_length = 10;
  programme.producers[1]->pregap_byte = 9;
  const SessionPlan plan = cut(programme, {{0, 20}, {325, 402}});
  SectorFeed feed(plan, nullptr);
  Bytes disc;
  for (size_t track = 0; track < plan.tracks.size(); ++track)
    for (int i = 0; i < plan.tracks[track].pregap + plan.tracks[track].sectors; ++i) {
      Bytes sector(disc::kBytesPerSector);
      ASSERT_TRUE(feed.next(track, sector.data())) << feed.failure();
      disc.insert(disc.end(), sector.begin(), sector.end());
    }
  EXPECT_TRUE(feed.complete());
  Bytes expected = programme.image();
  expected.insert(expected.begin() + 400 * disc::kBytesPerSector, 10 * disc::kBytesPerSector, 9);
  EXPECT_EQ(disc, expected);
}

TEST(AlbumLayout, EachSectorHasTheSourceThatFillsIt) {
  const Programme programme({400, 600});
  const SessionPlan plan = cut(programme, {{std::nullopt, 0}, {325, 400}});
  EXPECT_EQ(plan.sourceAt(0).producer, programme.producers[0].get());
  EXPECT_EQ(plan.sourceAt(399).producer, programme.producers[0].get());
  EXPECT_EQ(plan.sourceAt(400).producer, programme.producers[1].get());
  EXPECT_EQ(plan.sourceAt(999).producer, programme.producers[1].get());
}

TEST(AlbumLayout, AnotherNumberOfTracksIsRefused) {
  EXPECT_THAT(refusalOf(Programme({400, 600}), {{std::nullopt, 0}}),
              HasSubstr("the sheet has 1 track, and the burn was given 2"));
}

TEST(AlbumLayout, ATrackUnderFourSecondsIsRefusedAndNamed) {
  const Programme programme({400, 600});
  EXPECT_EQ(refusalOf(programme, {{std::nullopt, 0}, {300, 400}}), "");
  EXPECT_THAT(refusalOf(programme, {{std::nullopt, 0}, {299, 400}}),
              HasSubstr("track 1 is shorter than 4 seconds"));
  EXPECT_EQ(refusalOf(programme, {{std::nullopt, 0}, {std::nullopt, 700}}), "");
  EXPECT_THAT(refusalOf(programme, {{std::nullopt, 0}, {std::nullopt, 701}}),
              HasSubstr("track 2 is shorter than 4 seconds"));
}

TEST(AlbumLayout, ALayoutThatIsNotOfThisAudioIsRefusedAndNamed) {
  const Programme programme({400, 600});
  EXPECT_THAT(refusalOf(programme, {{std::nullopt, 0}, {400, 325}}), HasSubstr("track 2 of"));
  EXPECT_THAT(refusalOf(programme, {{std::nullopt, 0}, {325, 1000}}), HasSubstr("track 2 of"));
  EXPECT_THAT(refusalOf(programme, {{std::nullopt, 400}, {325, 400}}), HasSubstr("track 1 of"));
  EXPECT_THAT(refusalOf(programme, {{std::nullopt, -1}, {325, 400}}), HasSubstr("track 1 of"));
  EXPECT_THAT(refusalOf(programme, {{std::nullopt, 0}, {-5, 400}}), HasSubstr("track 1 of"));
}

}  // namespace
}  // namespace velmor::recording::testing
