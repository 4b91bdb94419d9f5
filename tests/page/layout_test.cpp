// Where a sheet's tracks, pauses and images come to lie on the disc.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "check/check.h"
#include "page/album/disc_of_set.h"
#include "page/album/disc_of_sheet.h"
#include "page/measure/disc_ids.h"
#include "page/measure/outline.h"
#include "tests/check/test_images.h"
#include "tests/ddp/set_folder.h"

namespace velmor::page {

// As a test prints them.
bool operator==(const Stretch& a, const Stretch& b) {
  return a.begin == b.begin && a.end == b.end;
}
void PrintTo(const Stretch& stretch, std::ostream* out) {
  *out << stretch.begin << " to " << stretch.end;
}

}  // namespace velmor::page

namespace velmor::page::test {
namespace {

using check::test::TestImage;
using test_kit::writeFile;
using testing::ElementsAre;

class Layout : public testing::Test {
 protected:
  PageDisc discOf(const std::string& lines) {
    writeFile(m_folder / "a.cue", lines);
    return discOfSheet(check::check(m_folder / "a.cue", {}));
  }
  void image(const std::string& name, int64_t sectors) {
    TestImage(sectors).write(m_folder / name);
  }
  static std::vector<int64_t> sectorsOf(const PageTrack& track) {
    std::vector<int64_t> sectors;
    for (const PageIndex& index : track.indices) sectors.push_back(index.sector);
    return sectors;
  }

  test_kit::ScratchFolder m_folder;
};

TEST_F(Layout, GivesTrack1ThePauseThatEveryDiscHas) {
  image("a.bin", 1000);
  const PageDisc disc = discOf("FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n");
  EXPECT_THAT(sectorsOf(disc.tracks[0]), ElementsAre(-150, 0));
  EXPECT_EQ(disc.tracks[0].pause, 150);
  EXPECT_EQ(disc.tracks[0].place, (Stretch{0, 1000}));
  EXPECT_EQ(disc.end, 1000);
}

TEST_F(Layout, CountsSoundBeforeTrack1AsItsPause) {
  image("a.bin", 1000);
  const PageDisc disc =
      discOf("FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 00 00:00:00\nINDEX 01 00:06:00\n");
  EXPECT_THAT(sectorsOf(disc.tracks[0]), ElementsAre(-150, 450));
  EXPECT_EQ(disc.tracks[0].pause, 600);
  EXPECT_EQ(disc.tracks[0].place, (Stretch{450, 1000}));
}

TEST_F(Layout, EndsATrackWhereThePauseOfTheNextBegins) {
  image("a.bin", 1000);
  const PageDisc disc = discOf(
      "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
      "TRACK 02 AUDIO\nINDEX 00 00:06:00\nINDEX 01 00:08:00\nINDEX 02 00:09:00\n");
  EXPECT_EQ(disc.tracks[0].place, (Stretch{0, 450}));
  EXPECT_THAT(sectorsOf(disc.tracks[1]), ElementsAre(450, 600, 675));
  EXPECT_EQ(disc.tracks[1].pause, 150);
}

TEST_F(Layout, FindsThePauseOfATrackInTheImageOfTheOneBefore) {
  image("a.bin", 600);
  image("b.bin", 500);
  const PageDisc disc = discOf(
      "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 AUDIO\nINDEX 00 00:06:00\n"
      "FILE b.bin BINARY\nINDEX 01 00:00:00\n");
  EXPECT_EQ(disc.tracks[0].place, (Stretch{0, 450}));
  EXPECT_THAT(sectorsOf(disc.tracks[1]), ElementsAre(450, 600));
  EXPECT_EQ(disc.tracks[1].place, (Stretch{600, 1100}));
  ASSERT_EQ(disc.runs.size(), 2U);
  EXPECT_EQ(disc.runs[1].at, 600);
}

TEST_F(Layout, CutsAnImageWhereTheSheetPutsSilenceIntoIt) {
  image("a.bin", 1000);
  const PageDisc disc = discOf(
      "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
      "TRACK 02 AUDIO\nPREGAP 00:02:00\nINDEX 01 00:06:00\n");
  EXPECT_THAT(sectorsOf(disc.tracks[1]), ElementsAre(450, 600));
  EXPECT_EQ(disc.end, 1150);
  ASSERT_EQ(disc.runs.size(), 2U);
  EXPECT_EQ(disc.runs[0].sectors, 450);
  EXPECT_EQ(disc.runs[1].first, 450);
  EXPECT_EQ(disc.runs[1].at, 600);
  EXPECT_EQ(disc.runs[1].sectors, 550);
}

TEST_F(Layout, LeavesOpenWhatNobodyKnows) {
  const PageDisc missing = discOf(
      "FILE none.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 AUDIO\n"
      "INDEX 01 00:06:00\n");
  EXPECT_FALSE(missing.end_known);
  EXPECT_EQ(missing.tracks[0].place, (Stretch{0, 450}));
  EXPECT_FALSE(missing.tracks[1].place);
  EXPECT_FALSE(missing.images[0].exists);
  EXPECT_FALSE(discIds(missing));
  EXPECT_FALSE(isMeasured(missing, 0));
}

TEST_F(Layout, LaysNothingOverAnotherThingWhenTimesDescend) {
  image("a.bin", 1000);
  const PageDisc disc = discOf(
      "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:08:00\nTRACK 02 AUDIO\nINDEX 01 00:04:00\n"
      "TRACK 03 AUDIO\nPREGAP 90:00:00\nINDEX 01 999999:00:00\n");
  int64_t end = disc.begin;
  for (const AudioRun& run : disc.runs) {
    EXPECT_GE(run.at, end);
    end = run.at + run.sectors;
  }
  EXPECT_FALSE(discIds(disc));
}

TEST_F(Layout, ShowsNinetyNineTracksAndSaysThatThereAreMore) {
  image("a.bin", 1000);
  std::string sheet = "FILE a.bin BINARY\n";
  for (int t = 0; t < 150; ++t) sheet += "TRACK 01 AUDIO\nINDEX 01 00:00:00\n";
  const PageDisc disc = discOf(sheet);
  EXPECT_EQ(disc.tracks.size(), 99U);
  EXPECT_EQ(disc.tracks_left_out, 51U);
}

TEST(LayoutOfASet, CountsItsSectorsAsADiscDoes) {
  const ddp::test::SheetFolder sheets;
  sheets.write("master");
  const PageDisc disc = discOfSet(sheets.check("master"), [](int64_t, int64_t) {});
  EXPECT_EQ(disc.name, "master");
  EXPECT_EQ(disc.title, "Night Drive");
  EXPECT_EQ(disc.begin, -150);
  EXPECT_EQ(disc.end, 1500);
  EXPECT_EQ(disc.tracks[0].place, (Stretch{0, 600}));
  EXPECT_EQ(disc.tracks[1].place, (Stretch{750, 1500}));
  EXPECT_EQ(disc.tracks[1].pause, 150);
  EXPECT_EQ(disc.tracks[1].flags, "DCP 4CH");
  ASSERT_EQ(disc.runs.size(), 1U);
  EXPECT_EQ(disc.runs[0].at, -150);
}

}  // namespace
}  // namespace velmor::page::test
