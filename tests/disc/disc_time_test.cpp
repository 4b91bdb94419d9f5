// Times of a disc, written and read, and the units and limits behind them.
#include "disc/units/disc_time.h"

#include <gtest/gtest.h>

#include <limits>

#include "disc/text/phrases.h"
#include "disc/units/disc_limits.h"

namespace velmor::disc::test {
namespace {

TEST(DiscTime, CountsSeventyFiveSectorsASecond) {
  EXPECT_EQ(msfText(0), "00:00:00");
  EXPECT_EQ(msfText(74), "00:00:74");
  EXPECT_EQ(msfText(75), "00:01:00");
  EXPECT_EQ(msfText(4499), "00:59:74");
  EXPECT_EQ(msfText(333000), "74:00:00");
  EXPECT_EQ(msfText(449999), "99:59:74");
  EXPECT_EQ(msfText(450000), "100:00:00");
  EXPECT_EQ(msfText(std::numeric_limits<int64_t>::max()).size(), 22U);
}

TEST(DiscTime, RoundsAClockTimeToMillisecondsWithCarry) {
  EXPECT_EQ(clockTime(0.0), "0:00.000");
  EXPECT_EQ(clockTime(59.9996), "1:00.000");
  EXPECT_EQ(clockTime(61.5), "1:01.500");
  EXPECT_EQ(clockTime(3599.9994), "59:59.999");
  EXPECT_EQ(clockTime(3599.9996), "1:00:00.000");
}

TEST(DiscTime, IsReadAsItIsWritten) {
  for (const int64_t sector : {0, 74, 75, 4499, 333000, 449999, 450000}) {
    const Msf time = parseMsf(msfText(sector));
    EXPECT_TRUE(time.inRange()) << sector;
    EXPECT_EQ(time.sectors(), sector);
  }
  for (const char* const none :
       {"", "1:2", "1:2:", ":1:2", "a:0:0", "-1:0:0", "1:2:3:4", "0:0:0000000"}) {
    EXPECT_FALSE(parseMsf(none).readable()) << none;
  }
  EXPECT_FALSE(parseMsf("00:60:00").inRange());
  EXPECT_FALSE(parseMsf("00:00:75").inRange());
  EXPECT_EQ(parseMsf("00:60:75").sectors(), 4575);
}

TEST(DiscLimits, AreThoseOfTheBooks) {
  EXPECT_EQ(kShortestTrackSectors, 300);
  EXPECT_EQ(kSectorsBeforeTrack1, 150);
  EXPECT_EQ(kSectorsOf74Minutes, 333'000);
  EXPECT_EQ(kSectorsOf79Minutes57, 359'775);
  EXPECT_EQ(msfText(kLastSector + kSectorsBeforeTrack1), "88:29:74");
  EXPECT_EQ(msfText(kLastLeadOut + kSectorsBeforeTrack1), "89:59:74");
}

TEST(Phrases, TurnASentenceIntoAClauseWithoutItsCapitalAndItsFullStop) {
  EXPECT_EQ(asClause("Render it again."), "render it again");
  EXPECT_EQ(asClause("A subcommand is required"), "a subcommand is required");
  EXPECT_EQ(asClause("INDEX 01 is missing."), "INDEX 01 is missing");
  EXPECT_EQ(asClause("--drive needs a number"), "--drive needs a number");
  EXPECT_EQ(asClause(""), "");
}

TEST(Phrases, CountAndList) {
  EXPECT_EQ(counted(1, "sample"), "1 sample");
  EXPECT_EQ(counted(0, "sample"), "0 samples");
  EXPECT_EQ(listed({"a"}), "a");
  EXPECT_EQ(listed({"a", "b", "c"}), "a, b and c");
  EXPECT_EQ(listed({"a", "b", "c", "d", "e", "f", "g"}), "a, b, c, d, e and 2 more");
  EXPECT_EQ(inQuotes("a b"), "\"a b\"");
}

}  // namespace
}  // namespace velmor::disc::test
