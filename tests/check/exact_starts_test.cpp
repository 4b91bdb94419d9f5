// A render knows where its tracks truly start: both ways in which a sheet learns of it.
#include "check/portable/exact_starts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "check/check.h"
#include "disc/portable/portable_disc.h"
#include "disc/sheet/sheet_parser.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "tests/check/test_images.h"

namespace velmor::check::test {
namespace {

using testing::ElementsAre;

constexpr const char* kSheet =
    "FILE \"image.bin\" BINARY\n"
    "  TRACK 01 AUDIO\n    INDEX 00 00:00:00\n    INDEX 01 00:02:00\n"
    "  TRACK 02 AUDIO\n    INDEX 00 00:08:00\n    INDEX 01 00:10:00\n"
    "  TRACK 03 AUDIO\n    INDEX 01 00:17:00\n";

ExactStart atSector(int64_t sector) {
  return {.frame = sector * disc::kFramesPerSector};
}

std::string shown(int number, int64_t sector) {
  return std::to_string(number) + " " + disc::msfText(sector);
}

std::vector<std::string> moved(const ExactStarts& exact) {
  disc::Sheet sheet = disc::parseSheet(kSheet);
  moveStarts(sheet, exact);
  std::vector<std::string> indices;
  for (const disc::Track& track : sheet.tracks)
    for (const disc::Index& index : track.indices)
      indices.push_back(shown(index.number, index.time.sectors()));
  return indices;
}

std::vector<std::string> inTheSecondSheet(const ExactStarts& exact) {
  const TemporaryFolder folder;
  TestImage(1800).write(folder / "image.bin");
  writeFile(folder / "image.cue", kSheet);
  const Report report = check(folder / "image.cue", {});
  std::vector<std::string> indices;
  for (const disc::PlainTrack& track : makePortable(report, folder / "p.cue", exact).tracks)
    for (const disc::PlainIndex& index : track.indices)
      indices.push_back(shown(index.number, index.sector));
  return indices;
}

class ExactPlaces
    : public testing::TestWithParam<std::vector<std::string> (*)(const ExactStarts&)> {};

INSTANTIATE_TEST_SUITE_P(InSheets, ExactPlaces, testing::Values(&moved, &inTheSecondSheet),
                         [](const auto& test) {
                           return test.param == &moved ? "AsTheyAre" : "ForAllReaders";
                         });

TEST_P(ExactPlaces, TakeBothIndicesAlongButForOneAtTheImagesFirstSector) {
  EXPECT_THAT(GetParam()({atSector(151), atSector(752), atSector(1276)}),
              ElementsAre("0 00:00:00", "1 00:02:01", "0 00:08:02", "1 00:10:02", "1 00:17:01"));
}

TEST_P(ExactPlaces, CutAFrameToItsSector) {
  ExactStarts starts = {atSector(150), atSector(750), atSector(1275)};
  starts[2].frame += disc::kFramesPerSector - 1;
  EXPECT_THAT(GetParam()(starts),
              ElementsAre("0 00:00:00", "1 00:02:00", "0 00:08:00", "1 00:10:00", "1 00:17:00"));
}

TEST_P(ExactPlaces, PutAPauseInThePlaceOfTheSheets) {
  ExactStarts starts = {atSector(150), atSector(750), atSector(1275)};
  starts[1].pause = 700;
  starts[2].pause = 1201;
  EXPECT_THAT(GetParam()(starts), ElementsAre("0 00:00:00", "1 00:02:00", "0 00:09:25",
                                              "1 00:10:00", "0 00:16:01", "1 00:17:00"));
}

TEST_P(ExactPlaces, OfAnotherNumberOfTracksMoveNothing) {
  EXPECT_THAT(GetParam()({atSector(151), atSector(752)}),
              ElementsAre("0 00:00:00", "1 00:02:00", "0 00:08:00", "1 00:10:00", "1 00:17:00"));
}

}  // namespace
}  // namespace velmor::check::test
