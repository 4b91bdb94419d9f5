#include "host/recording/session/sector_feed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disc/units/disc_units.h"
#include "tests/host/recording/programme.h"

namespace velmor::recording::testing {
namespace {

using ::testing::HasSubstr;

/// Takes all there is, as a recorder does.
Bytes drain(SectorFeed& feed, const SessionPlan& plan) {
  Bytes disc;
  for (size_t track = 0; track < plan.tracks.size(); ++track)
    for (int i = 0; i < plan.tracks[track].pregap + plan.tracks[track].sectors; ++i) {
      Bytes sector(disc::kBytesPerSector, 0xEE);
      if (!feed.next(track, sector.data())) return disc;
      disc.insert(disc.end(), sector.begin(), sector.end());
    }
  return disc;
}

struct Feed {
  explicit Feed(Programme& programme)
      : plan(planSession(programme.tracks.data(), programme.count())), feed(plan, nullptr) {}
  SessionPlan plan;
  SectorFeed feed;
};

TEST(SectorFeed, TheDiscHasTheBytesOfTheImage) {
  Programme programme({300, 310, 305});
  Feed f(programme);
  EXPECT_EQ(drain(f.feed, f.plan), programme.image());
  EXPECT_TRUE(f.feed.complete());
  EXPECT_FALSE(f.feed.failed());
}

TEST(SectorFeed, AnUnfilledEndOfTheDiscIsSilence) {
  Bytes image = noise(600);
  image.resize(image.size() - 1000);
  Programme programme(image, {300, 300});
  Feed f(programme);
  image.resize(image.size() + 1000, 0);
  EXPECT_EQ(drain(f.feed, f.plan), image);
  EXPECT_TRUE(f.feed.complete());
}

TEST(SectorFeed, AnImageThatLacksItsLastSectorWholeIsAFailure) {
  Programme programme(noise(599), {300, 300});
  Feed f(programme);
  drain(f.feed, f.plan);
  EXPECT_TRUE(f.feed.failed());
  EXPECT_THAT(f.feed.failure(), HasSubstr("ends too early at 00:07:74 (track 2)"));
}

struct ShortRead {
  size_t track, sector;
  const char* where;
};
class AShortReadInside : public ::testing::TestWithParam<ShortRead> {};

TEST_P(AShortReadInside, IsAFailureAndNeverAShift) {
  Programme programme({300, 300});
  programme.producers[GetParam().track]->short_at_sector = GetParam().sector;
  Feed f(programme);
  drain(f.feed, f.plan);
  EXPECT_TRUE(f.feed.failed());
  EXPECT_FALSE(f.feed.complete());
  EXPECT_THAT(f.feed.failure(), HasSubstr(GetParam().where));
}

INSTANTIATE_TEST_SUITE_P(Places, AShortReadInside,
                         ::testing::Values(ShortRead{0, 0, "00:00:00 (track 1)"},
                                           ShortRead{0, 150, "00:02:00 (track 1)"},
                                           ShortRead{0, 299, "00:03:74 (track 1)"},
                                           ShortRead{1, 0, "00:04:00 (track 2)"},
                                           ShortRead{1, 298, "00:07:73 (track 2)"}));

TEST(SectorFeed, AFailedReadStopsTheBurnForGood) {
  Programme programme({300, 300});
  programme.producers[1]->fails_at_sector = 10;
  Feed f(programme);
  EXPECT_EQ(drain(f.feed, f.plan).size(), size_t{310} * disc::kBytesPerSector);
  EXPECT_TRUE(f.feed.failed());
  EXPECT_THAT(f.feed.failure(), HasSubstr("could not be read at 00:04:10 (track 2)"));
  Bytes sector(disc::kBytesPerSector);
  EXPECT_FALSE(f.feed.next(1, sector.data()));
}

TEST(SectorFeed, AFailedReadOfTheLastSectorIsNoShortRead) {
  Programme programme({300});
  programme.producers[0]->fails_at_sector = 299;
  Feed f(programme);
  drain(f.feed, f.plan);
  EXPECT_TRUE(f.feed.failed());
}

TEST(SectorFeed, ThePregapComesFromTheProducerBeforeItsTrack) {
  Programme programme({300, 300});
  programme.tracks[1].pregap_length = 2;
  programme.producers[1]->pregap_byte = 7;
  Feed f(programme);
  const Bytes disc = drain(f.feed, f.plan);
  Bytes expected = programme.image();
  expected.insert(expected.begin() + 300 * disc::kBytesPerSector, 2 * disc::kBytesPerSector, 7);
  EXPECT_EQ(disc, expected);
}

TEST(SectorFeed, TheWishToStopIsHeardAtTheNextSector) {
  Programme programme({300});
  const SessionPlan plan = planSession(programme.tracks.data(), programme.count());
  std::atomic<bool> cancel{false};
  SectorFeed feed(plan, &cancel);
  Bytes sector(disc::kBytesPerSector);
  EXPECT_TRUE(feed.next(0, sector.data()));
  cancel = true;
  EXPECT_FALSE(feed.next(0, sector.data()));
  EXPECT_TRUE(feed.cancelled());
  EXPECT_FALSE(feed.failed());
}

TEST(SectorFeed, TracksInAnotherOrderAreAFailure) {
  Programme programme({300, 300, 300});
  Bytes sector(disc::kBytesPerSector);
  Feed skips(programme);
  EXPECT_FALSE(skips.feed.next(2, sector.data()));
  EXPECT_TRUE(skips.feed.failed());
  EXPECT_THAT(skips.feed.failure(), HasSubstr("in another order than that of the disc"));
  Feed leaves_early(programme);
  EXPECT_TRUE(leaves_early.feed.next(0, sector.data()));
  EXPECT_FALSE(leaves_early.feed.next(1, sector.data()));
  EXPECT_TRUE(leaves_early.feed.failed());
  EXPECT_THAT(leaves_early.feed.failure(), HasSubstr("left track 1 before its end"));
}

TEST(SectorFeed, MoreThanATrackHasIsAFailure) {
  Programme programme({300, 300});
  Feed f(programme);
  drain(f.feed, f.plan);
  Bytes sector(disc::kBytesPerSector);
  EXPECT_FALSE(f.feed.next(1, sector.data()));
  EXPECT_TRUE(f.feed.failed());
  EXPECT_THAT(f.feed.failure(), HasSubstr("more audio than track 2 has"));
}

}  // namespace
}  // namespace velmor::recording::testing
