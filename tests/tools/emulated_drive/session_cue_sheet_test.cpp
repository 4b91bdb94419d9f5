// SEND CUE SHEET: what a drive takes and what it refuses.

#include <gtest/gtest.h>

#include "disc/failure.h"
#include "tests/tools/emulated_drive/emulated_drive_case.h"

namespace velmor::emulated_drive {
namespace {

using Entries = std::vector<CueEntry>;

struct Failure {
  const char* name;
  void (*spoil)(Entries&);
  SenseData sense = kInvalidFieldInParameters;
};

class ACueSheetIsRefused : public EmulatedDriveCase,
                           public ::testing::WithParamInterface<Failure> {};

TEST_P(ACueSheetIsRefused, AndNothingIsBegun) {
  Entries entries = twoTracks();
  GetParam().spoil(entries);
  EXPECT_EQ(sendCue(entries).sense, GetParam().sense);
  EXPECT_EQ(write(-150, 1).sense, kCommandSequence);
  EXPECT_EQ(m_drive.disc()->state, DiscStatus::kBlank);
}

INSTANTIATE_TEST_SUITE_P(
    Because, ACueSheetIsRefused,
    ::testing::Values(
        Failure{"ItIsEmpty", [](Entries& e) { e.clear(); }, kParameterListLength},
        Failure{"ItHasNoLeadIn", [](Entries& e) { e.erase(e.begin()); }},
        Failure{"TheLeadInHasMainData", [](Entries& e) { e[0][3] = 0x00; }},
        Failure{"TheLeadInHasATime", [](Entries& e) { e[0][6] = 1; }},
        Failure{"ItHasNoLeadOut", [](Entries& e) { e.pop_back(); }},
        Failure{"TheLeadOutIsNotIndexOne", [](Entries& e) { e.back()[2] = 0; }},
        Failure{"SomethingFollowsTheLeadOut",
                [](Entries& e) { e.push_back(cueIndex(0, 3, 1, 0, 1200)); }},
        Failure{"ItHasNoTracks", [](Entries& e) { e.erase(e.begin() + 1, e.end() - 1); }},
        Failure{"TheFirstTrackHasNoPregap", [](Entries& e) { e.erase(e.begin() + 1); }},
        Failure{"TheFirstPregapStartsLate",
                [](Entries& e) { e[1] = cueIndex(0, 1, 0, 0, -149); }},
        Failure{"TheFirstTrackStartsInsideTheTwoSeconds",
                [](Entries& e) { e[2] = cueIndex(0, 1, 1, 0, -1); }},
        Failure{"ATrackNumberIsLeftOut", [](Entries& e) { e[3][1] = e[4][1] = 3; }},
        Failure{"ATrackNumberIsAHundred", [](Entries& e) { e[3][1] = e[4][1] = 100; }},
        Failure{"ATrackHasOnlyAPregap", [](Entries& e) { e.erase(e.begin() + 4); }},
        Failure{"AnIndexIsLeftOut", [](Entries& e) { e[4][2] = 2; }},
        Failure{"TimeGoesBack", [](Entries& e) { e[4] = cueIndex(2, 2, 1, 0, 299); }},
        Failure{"TimeStandsStill", [](Entries& e) { e[4] = cueIndex(2, 2, 1, 0, 300); }},
        Failure{"ASecondIsSixty", [](Entries& e) { e[4][6] = 60; }},
        Failure{"AFrameIsSeventyFive", [](Entries& e) { e[4][7] = 75; }},
        Failure{"TheFlagsChangeInsideATrack", [](Entries& e) { e[4][0] = 0x01; }},
        Failure{"ATrackHoldsData", [](Entries& e) { e[3][0] = e[4][0] = 0x41; }},
        Failure{"TheDataFormIsUnknown", [](Entries& e) { e[3][3] = 0x10; }},
        Failure{"ATrackIsUnderFourSeconds",
                [](Entries& e) { e.back() = cueIndex(0, 0xAA, 1, 1, 375 + 299); }},
        Failure{"HalfAnIsrcIsMissing",
                [](Entries& e) {
                  e.insert(e.begin() + 1, CueEntry{0x03, 1, 'D', 'E', 'A', 'B', 'C', '2'});
                }},
        Failure{"AnIsrcIsInLowerCase",
                [](Entries& e) {
                  e.insert(e.begin() + 1, CueEntry{0x03, 1, '0', '0', '0', '0', '0', '1'});
                  e.insert(e.begin() + 1, CueEntry{0x03, 1, 'd', 'e', 'a', 'b', 'c', '2'});
                }},
        Failure{"TheMcnHasALetter",
                [](Entries& e) {
                  e.insert(e.begin(), CueEntry{0x02, '3', '3', '3', '9', '3', '1', 0});
                  e.insert(e.begin(), CueEntry{0x02, '4', '0', 'O', '6', '3', '8', '1'});
                }},
        Failure{"TheLeadOutLiesBeyondTheDisc",
                [](Entries& e) { e.back() = cueIndex(0, 0xAA, 1, 1, 359846); },
                kAddressOutOfRange}),
    [](const auto& refusal) { return std::string(refusal.param.name); });

TEST_F(EmulatedDriveCase, ADiscThatIsExactlyFullIsTaken) {
  Entries entries = twoTracks();
  entries.back() = cueIndex(0, 0xAA, 1, 1, 359845);
  EXPECT_FALSE(sendCue(entries).sense);
}

TEST_F(EmulatedDriveCase, ASheetThatIsNoWholeNumberOfEntriesIsRefused) {
  ByteBuffer sheet = flat(twoTracks());
  sheet.pop_back();
  EXPECT_EQ(sendCue(sheet).sense, kParameterListLength);
}

TEST_F(EmulatedDriveCase, ASheetShorterThanAnnouncedIsATransferFault) {
  const ByteBuffer sheet = flat(twoTracks());
  EXPECT_EQ(send({0x5D, 0, 0, 0, 0, 0, 0, 0, 200}, sheet).sense, kDataPhaseError);
}

TEST_F(EmulatedDriveCase, NinetyNineTracksAreTaken) {
  Entries entries = {{0x01, 0, 0, 0x01, 0, 0, 0, 0}, cueIndex(0, 1, 0, 0, -150)};
  for (int track = 1; track <= 99; ++track) {
    entries.push_back(cueIndex(0, static_cast<uint8_t>(track), 1, 0, (track - 1) * 300));
  }
  entries.push_back(cueIndex(0, 0xAA, 1, 1, 99 * 300));
  EXPECT_FALSE(sendCue(entries).sense);
}

TEST_F(EmulatedDriveCase, APauseMayBeTakenOutOfTheFourSecondsBeforeIt) {
  Entries entries = twoTracks();
  entries[3] = cueIndex(2, 2, 0, 0x00, 299);
  entries[4] = cueIndex(2, 2, 1, 0x00, 300);
  EXPECT_FALSE(sendCue(entries).sense);
}

TEST_F(EmulatedDriveCase, CodesOfTheSheetReachTheDisc) {
  Entries entries = twoTracks();
  const Entries codes = {{0x02, '4', '0', '0', '6', '3', '8', '1'},
                         {0x02, '3', '3', '3', '9', '3', '1', 0},
                         {0x23, 2, 'D', 'E', 'A', 'B', 'C', '2'},
                         {0x23, 2, '0', '0', '0', '0', '0', '1'}};
  entries.insert(entries.begin() + 3, codes.begin() + 2, codes.end());
  entries.insert(entries.begin(), codes.begin(), codes.begin() + 2);
  ASSERT_FALSE(sendCue(entries).sense);
  writeUpTo(kTwoTracksEnd);
  synchronize();
  const ByteBuffer mcn = send({0x42, 0, 0x40, 2, 0, 0, 0, 0, 24}).data;
  EXPECT_EQ(std::string(mcn.begin() + 9, mcn.begin() + 22), "4006381333931");
  EXPECT_EQ(mcn[8], 0x80);
  const ByteBuffer none = send({0x42, 0, 0x40, 3, 0, 0, 1, 0, 24}).data;
  EXPECT_EQ(none[8], 0);
  const ByteBuffer isrc = send({0x42, 0, 0x40, 3, 0, 0, 2, 0, 24}).data;
  EXPECT_EQ(std::string(isrc.begin() + 9, isrc.begin() + 21), "DEABC2000001");
  EXPECT_EQ(isrc[8], 0x80);
}

}  // namespace
}  // namespace velmor::emulated_drive
