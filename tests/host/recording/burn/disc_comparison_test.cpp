#include "host/recording/burn/disc_comparison.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "tests/host/recording/scripted_recorder.h"

namespace velmor::recording::testing {
namespace {

using ::testing::HasSubstr;
using Verdict = Comparison::Verdict;

Comparison compare(ScriptedDrive& drive, const Programme& programme) {
  const SessionPlan plan = planSession(programme.tracks.data(), programme.count());
  ScriptedRecorder recorder(drive);
  return compareDisc(recorder, plan, [](int64_t) { return true; });
}

TEST(DiscComparison, EqualBytesAreEqual) {
  const Programme programme({300, 333});
  ScriptedDrive drive;
  drive.disc = programme.image();
  const Comparison result = compare(drive, programme);
  EXPECT_EQ(result.verdict, Verdict::kEqual);
  EXPECT_EQ(result.words, "the disc equals the image");
}

class ReadOffset : public ::testing::TestWithParam<int> {};

TEST_P(ReadOffset, OfTheDriveIsFoundAndHeldThroughout) {
  const Programme programme({300, 333});
  ScriptedDrive drive;
  drive.disc = programme.image();
  drive.read_offset = GetParam();
  const Comparison result = compare(drive, programme);
  EXPECT_EQ(result.verdict, Verdict::kEqual) << result.words;
  EXPECT_THAT(result.words, HasSubstr("offset of " + std::to_string(-GetParam()) + " frames"));
}

INSTANTIATE_TEST_SUITE_P(Frames, ReadOffset,
                         ::testing::Values(1, -1, 6, -30, 102, 587, 588, 589, -667, 1292, -2940,
                                           2940));

TEST(DiscComparison, SilenceBeforeTheMusicHidesNoOffset) {
  Bytes image = noise(600);
  std::fill(image.begin(), image.begin() + 200 * disc::kBytesPerSector, 0);
  const Programme programme(image, {300, 300});
  ScriptedDrive drive;
  drive.disc = image;
  drive.read_offset = 48;
  EXPECT_EQ(compare(drive, programme).verdict, Verdict::kEqual);
}

TEST(DiscComparison, SilenceAllThroughIsComparedToo) {
  const Programme programme(Bytes(size_t{300} * disc::kBytesPerSector, 0), {300});
  ScriptedDrive drive;
  drive.disc = programme.image();
  EXPECT_EQ(compare(drive, programme).verdict, Verdict::kEqual);
  drive.disc[1'000'00] = 1;
  EXPECT_EQ(compare(drive, programme).verdict, Verdict::kDifferent);
}

class OneWrongByte : public ::testing::TestWithParam<size_t> {};

TEST_P(OneWrongByte, IsFoundAndItsSectorNamed) {
  const Programme programme({300, 300});
  ScriptedDrive drive;
  drive.disc = programme.image();
  drive.disc[GetParam()] ^= 1;
  const Comparison result = compare(drive, programme);
  EXPECT_EQ(result.verdict, Verdict::kDifferent);
  const auto sector = static_cast<int64_t>(GetParam() / disc::kBytesPerSector);
  EXPECT_THAT(result.words, HasSubstr("in 1 sector, at " + disc::msfText(sector) +
                                      (sector < 300 ? " (track 1)" : " (track 2)")));
}

INSTANTIATE_TEST_SUITE_P(Places, OneWrongByte,
                         ::testing::Values(size_t{8} * disc::kBytesPerSector,
                                           size_t{150} * disc::kBytesPerSector,
                                           size_t{300} * disc::kBytesPerSector - 1,
                                           size_t{300} * disc::kBytesPerSector,
                                           size_t{600} * disc::kBytesPerSector - 1));

TEST(DiscComparison, AnotherDiscIsDifferent) {
  const Programme programme({300});
  ScriptedDrive drive;
  drive.disc = noise(300, 99);
  const Comparison result = compare(drive, programme);
  EXPECT_EQ(result.verdict, Verdict::kDifferent);
  EXPECT_THAT(result.words, HasSubstr("in 300 sectors"));
}

TEST(DiscComparison, AnOffsetThatDoesNotHoldIsADifference) {
  const Programme programme({300, 300});
  ScriptedDrive drive;
  drive.disc = programme.image();
  // A frame lost in the middle: all after it comes early.
  drive.disc.erase(drive.disc.begin() + 300 * disc::kBytesPerSector,
                   drive.disc.begin() + 300 * disc::kBytesPerSector + 4);
  drive.disc.insert(drive.disc.end(), 4, 0);
  EXPECT_EQ(compare(drive, programme).verdict, Verdict::kDifferent);
}

TEST(DiscComparison, AFlawInTheFirstSecondIsAFlawAndNoDriveThatCannotRead) {
  const Programme programme({300, 300});
  ScriptedDrive drive;
  drive.disc = programme.image();
  for (const int64_t flaw : {0, 3, 20}) {
    drive.unreadable_from = flaw;
    drive.unreadable_to = flaw + 1;
    const Comparison flawed = compare(drive, programme);
    EXPECT_EQ(flawed.verdict, Verdict::kDifferent) << flaw;
    EXPECT_THAT(flawed.words, HasSubstr("cannot be read at " + disc::msfText(flaw)));
  }
}

TEST(DiscComparison, ADiscThatBreaksOffIsDifferentAndOneThatCannotBeReadIsUndecided) {
  const Programme programme({300, 300});
  ScriptedDrive drive;
  drive.disc = programme.image();
  drive.unreadable_from = 500;
  const Comparison broken = compare(drive, programme);
  EXPECT_EQ(broken.verdict, Verdict::kDifferent);
  EXPECT_THAT(broken.words, HasSubstr("cannot be read at 00:06:50 (track 2)"));
  drive.unreadable_from = 0;
  EXPECT_EQ(compare(drive, programme).verdict, Verdict::kUndecided);
}

TEST(DiscComparison, CanBeStopped) {
  const Programme programme({300});
  const SessionPlan plan = planSession(programme.tracks.data(), programme.count());
  ScriptedDrive drive;
  drive.disc = programme.image();
  ScriptedRecorder recorder(drive);
  const Comparison result = compareDisc(recorder, plan, [](int64_t done) { return done < 100; });
  EXPECT_EQ(result.verdict, Verdict::kUndecided);
  EXPECT_THAT(result.words, HasSubstr("stopped"));
}

TEST(DiscComparison, AnImageThatCannotBeReadAgainIsUndecided) {
  const Programme programme({300});
  programme.producers[0]->fails_at_sector = 20;
  ScriptedDrive drive;
  drive.disc = programme.image();
  EXPECT_EQ(compare(drive, programme).verdict, Verdict::kUndecided);
}

}  // namespace
}  // namespace velmor::recording::testing
