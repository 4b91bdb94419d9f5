// The sentences: sense data, device files, discs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>

#include "disc/failure.h"
#include "host/recording/burn/medium_words.h"
#include "host/recording/burn/sense.h"
#include "host/recording/libburn/device_access.h"

namespace velmor::recording::testing {
namespace {

using ::testing::HasSubstr;

SessionPlan twoTracks() {
  SessionPlan plan;
  plan.tracks = {{0, 4500, 0}, {0, 4500, 4500}};
  plan.sectors = 9000;
  return plan;
}

TEST(Sense, IsFoundInAMessage) {
  const auto sense = findSense("SCSI error on write(5000,13): [3 0C 00] Medium error");
  ASSERT_TRUE(sense.has_value());
  EXPECT_EQ(sense->key, 3);
  EXPECT_EQ(sense->code, 0x0C);
  EXPECT_EQ(sense->qualifier, 0);
  EXPECT_FALSE(findSense("no numbers here [1] [2 3]").has_value());
}

TEST(Sense, AMediumErrorIsToldWithItsPlaceOnTheDisc) {
  EXPECT_EQ(explainMessages({{false, "a hint [5 24 00]"},
                             {true, "SCSI error on write(5000,13): [3 0C 00] Medium error"}},
                            twoTracks()),
            "the drive stopped at 01:06:50 (track 2): the disc has a flaw there: it could not be "
            "written (sense 3 0C 00)");
}

TEST(Sense, AnUnknownCodeKeepsItsNumbers) {
  EXPECT_EQ(senseInWords({0xD, 0x99, 0x01}), "the drive reports a failure (sense D 99 01)");
}

TEST(Sense, OfEveryKnownCodeIsToldInWords) {
  const struct {
    Sense sense;
    const char* words;
  } cases[] = {{{2, 0x3A, 1}, "there is no disc in the drive"},
               {{5, 0x30, 5}, "the disc is of a kind that the drive cannot write"},
               {{2, 0x04, 1}, "the drive is not ready"},
               {{3, 0x0C, 9}, "the disc has a flaw there: it could not be written"},
               {{3, 0x11, 5}, "the disc cannot be read there"},
               {{3, 0x73, 3}, "the laser could not be adjusted to the disc"},
               {{5, 0x21, 2}, "the audio did not come where the drive expected it"},
               {{5, 0x21, 0}, "the disc has no such place: it is too small"},
               {{5, 0x2C, 0}, "the drive was given its commands in an order"},
               {{5, 0x26, 0}, "the drive does not accept the layout of the disc"},
               {{5, 0x24, 0}, "the drive does not know what it was asked for"},
               {{5, 0x63, 0}, "the disc is full"},
               {{5, 0x64, 0}, "the drive does not accept this kind of track here"},
               {{3, 0x72, 0}, "the disc could not be closed"},
               {{7, 0x27, 0}, "the disc is write-protected"},
               {{4, 0x08, 3}, "the connection to the drive broke down"},
               {{4, 0x09, 0}, "the laser lost its track"},
               {{6, 0x28, 0}, "the disc was changed"},
               {{6, 0x29, 0}, "the drive was switched off or reset"},
               {{4, 0x53, 0}, "the tray could not be moved"},
               {{3, 0x02, 0}, "the disc has a flaw"},
               {{4, 0x44, 0}, "the drive has a defect"},
               {{6, 0x2A, 1}, "the drive or its disc changed in between"},
               {{7, 0x00, 0}, "the disc is write-protected"},
               {{0xB, 0x00, 6}, "the drive broke the command off"},
               {{5, 0x04, 0}, "the drive reports a failure"}};
  for (const auto& [sense, words] : cases)
    EXPECT_THAT(senseInWords(sense), ::testing::StartsWith(words)) << sense.code;
}

TEST(Sense, TheNarrowerMeaningWins) {
  EXPECT_THAT(senseInWords({5, 0x21, 0x02}), HasSubstr("where the drive expected it"));
  EXPECT_THAT(senseInWords({5, 0x21, 0x00}), HasSubstr("too small"));
}

TEST(Sense, AMessageWithoutSenseIsPassedOn) {
  EXPECT_EQ(explainMessages({{true, "Too few memory"}}, twoTracks()),
            "the recorder says: Too few memory");
  EXPECT_EQ(explainMessages({}, twoTracks()), "");
}

struct Access {
  mode_t mode;
  gid_t member_of;
  int error;
  const char* words;
};
class DeviceAccess : public ::testing::TestWithParam<Access> {};

TEST_P(DeviceAccess, SaysWhatIsMissing) {
  const DeviceFile file{"/dev/sr0", 0, 24, GetParam().mode, "root", "cdrom"};
  EXPECT_THAT(explainAccess(file, {1000, {GetParam().member_of}}, GetParam().error),
              HasSubstr(GetParam().words));
}

INSTANTIATE_TEST_SUITE_P(
    Reasons, DeviceAccess,
    ::testing::Values(Access{0660, 100, EACCES, "you are not in the group cdrom"},
                      Access{0660, 100, EACCES, "sudo usermod -aG cdrom"},
                      Access{0640, 24, EACCES, "permissions 640, so not even its group"},
                      Access{0600, 100, EPERM, "chmod g+rw /dev/sr0"},
                      Access{0660, 24, EACCES, "something other than these permissions"},
                      Access{0660, 24, EBUSY, "in use by another program"},
                      Access{0660, 24, ENXIO, "no drive behind \"/dev/sr0\""},
                      Access{0660, 24, EIO, "Input/output error"}));

TEST(DeviceAccess, AFileThatIsGoneIsSaidToBeGone) {
  EXPECT_THAT(accessObstacle("/dev/no-such-recorder"), HasSubstr("not there any more"));
}

std::string verdictOn(const DiscInDrive& medium, bool may_overwrite) {
  try {
    return judgeMedium(medium, may_overwrite) == MediumVerdict::kReady ? "ready" : "needs blanking";
  } catch (const Failure& refusal) {
    return refusal.what();
  }
}

struct Disc {
  DiscInDrive medium;
  bool may_overwrite;
  const char* verdict;
};
class ADisc : public ::testing::TestWithParam<Disc> {};

TEST_P(ADisc, IsJudged) {
  EXPECT_THAT(verdictOn(GetParam().medium, GetParam().may_overwrite),
              HasSubstr(GetParam().verdict));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, ADisc,
    ::testing::Values(
        Disc{{DiscCondition::kBlank, "CD-R", true, false, 1, 1}, true, "ready"},
        Disc{{DiscCondition::kBlank, "CD-RW", true, true, 1, 1}, false, "ready"},
        Disc{{DiscCondition::kNone, "", false, false, 0, 0}, true, "no disc in the drive"},
        Disc{{DiscCondition::kClosed, "CD-R", true, false, 0, 1},
             true,
             "written and closed: nothing"},
        Disc{{DiscCondition::kClosed, "CD-ROM", false, false, 0, 0},
             true,
             "nothing can be recorded"},
        Disc{{DiscCondition::kAppendable, "CD-R", true, false, 0, 1},
             true,
             "open for more: nothing"},
        Disc{{DiscCondition::kClosed, "CD-RW", true, true, 0, 1}, true, "needs blanking"},
        Disc{{DiscCondition::kAppendable, "CD-RW", true, true, 0, 1}, true, "needs blanking"},
        Disc{{DiscCondition::kClosed, "CD-RW", true, true, 0, 1}, false, "may not overwrite"},
        Disc{{DiscCondition::kBlank, "DVD-R", false, false, 1, 1}, true, "needs a CD-R or CD-RW"},
        Disc{
            {DiscCondition::kClosed, "DVD-RW", false, true, 0, 0}, true, "nothing can be recorded"},
        Disc{{DiscCondition::kUnsuitable, "", false, false, 0, 0}, true, "cannot use its disc"},
        Disc{{DiscCondition::kUnsuitable, "CD-RW", true, true, 0, 1}, true, "needs blanking"},
        Disc{{DiscCondition::kUnsuitable, "CD-R", true, false, 0, 1}, true, "broken off: nothing"},
        Disc{{DiscCondition::kUnknown, "", false, false, 0, 0}, true, "cannot use its disc"}));

TEST(Room, TheImageMayFillTheDiscAndNotOneSectorMore) {
  EXPECT_NO_THROW(checkRoom(1000, 1000));
  EXPECT_NO_THROW(checkRoom(0, 1000)) << "a drive that does not say leaves it to the burn";
  try {
    checkRoom(333'000, 333'001);
    FAIL();
  } catch (const Failure& refusal) {
    EXPECT_THAT(refusal.what(), HasSubstr("74:00:01 long"));
    EXPECT_THAT(refusal.what(), HasSubstr("room for 74:00:00: 00:00:01 too much"));
  }
}

TEST(DiscCondition, AfterAFailureDependsOnTheDisc) {
  DiscInDrive medium{DiscCondition::kAppendable, "CD-R", true, false, 0, 0};
  EXPECT_THAT(stateAfterFailure(medium, false), HasSubstr("cannot be used any more"));
  EXPECT_THAT(stateAfterFailure(medium, true), HasSubstr("as it was"));
  medium.rewritable = true;
  EXPECT_THAT(stateAfterFailure(medium, false), HasSubstr("can be blanked and used again"));
  medium.state = DiscCondition::kBlank;
  EXPECT_THAT(stateAfterFailure(medium, false), HasSubstr("still blank"));
}

TEST(DiscCondition, IsDescribedForAList) {
  EXPECT_EQ(describeMedium({DiscCondition::kBlank, "CD-R", true, false, 359'849, 359'849}),
            "a blank CD-R, 79:57:74 free");
  EXPECT_EQ(describeMedium({}), "a disc that the drive does not recognise");
}

}  // namespace
}  // namespace velmor::recording::testing
