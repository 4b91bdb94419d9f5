// Readiness, unit attention, the tray, and what the drive tells of itself.

#include <gtest/gtest.h>

#include "tests/tools/emulated_drive/emulated_drive_case.h"

namespace velmor::emulated_drive {
namespace {

TEST_F(EmulatedDriveCase, ANewDiscIsAnnouncedOnceToTheNextCommand) {
  m_drive.changeMedium(EmulatedDisc{});
  EXPECT_EQ(testUnitReady().sense, kMediumChanged);
  EXPECT_FALSE(testUnitReady().sense);
}

TEST_F(EmulatedDriveCase, InquiryIsAnsweredAlthoughAnAttentionWaits) {
  m_drive.changeMedium(EmulatedDisc{});
  EXPECT_EQ(send({0x12, 0, 0, 0, 36}).data.size(), 36u);
  EXPECT_FALSE(send({0x46, 0, 0, 0, 0, 0, 0, 0, 8}).sense);
  EXPECT_FALSE(send({0x4A, 1, 0, 0, 0x10, 0, 0, 0, 8}).sense);
  EXPECT_EQ(testUnitReady().sense, kMediumChanged);
}

TEST_F(EmulatedDriveCase, RequestSenseTakesTheAttentionAway) {
  m_drive.changeMedium(EmulatedDisc{});
  const ByteBuffer sense = send({0x03, 0, 0, 0, 18}).data;
  EXPECT_EQ(sense[2], 6);
  EXPECT_EQ(sense[12], 0x28);
  EXPECT_FALSE(testUnitReady().sense);
}

TEST_F(EmulatedDriveCase, AnEmptyTrayIsNotReadyAndSaysWhetherItIsOpen) {
  m_drive.load(std::nullopt, false);
  EXPECT_EQ(testUnitReady().sense, kNoMediumTrayClosed);
  EXPECT_EQ(sendCue(twoTracks()).sense, kNoMediumTrayClosed);
  EXPECT_EQ(readToc(0).sense, kNoMediumTrayClosed);
  m_drive.openTray(true);
  EXPECT_EQ(testUnitReady().sense, kNoMediumTrayOpen);
}

TEST_F(EmulatedDriveCase, ADiscThatSpinsUpIsReadyAfterSomePolls) {
  Faults faults;
  faults.becoming_ready_polls = 2;
  m_drive.setFaults(faults);
  m_drive.load(EmulatedDisc{}, false);
  EXPECT_EQ(testUnitReady().sense, kBecomingReady);
  EXPECT_EQ(testUnitReady().sense, kBecomingReady);
  EXPECT_FALSE(testUnitReady().sense);
}

TEST_F(EmulatedDriveCase, TheTrayTakesTheDiscOutAndBackIn) {
  ASSERT_FALSE(send({0x1B, 0, 0, 0, 2}).sense);
  EXPECT_TRUE(m_drive.trayOpen());
  EXPECT_EQ(testUnitReady().sense, kNoMediumTrayOpen);
  ASSERT_FALSE(send({0x1B, 0, 0, 0, 3}).sense);
  EXPECT_EQ(testUnitReady().sense, kMediumChanged);
  EXPECT_FALSE(testUnitReady().sense);
}

TEST_F(EmulatedDriveCase, ALockedTrayStaysIn) {
  ASSERT_FALSE(send({0x1E, 0, 0, 0, 1}).sense);
  EXPECT_EQ(send({0x1B, 0, 0, 0, 2}).sense, kRemovalPrevented);
  ASSERT_FALSE(send({0x1E, 0, 0, 0, 0}).sense);
  EXPECT_FALSE(send({0x1B, 0, 0, 0, 2}).sense);
}

TEST_F(EmulatedDriveCase, UnknownCommandsAreRefused) {
  constexpr uint8_t kCodes[] = {0x04, 0x45, 0xA4, 0xAD, 0xFF};
  for (const uint8_t code : kCodes) {
    EXPECT_EQ(send({code}).sense, kUnknownCommand) << int{code};
  }
  EXPECT_EQ(m_drive.execute({}).sense, kUnknownCommand);
}

TEST_F(EmulatedDriveCase, ACommandBlockThatIsTooShortIsRefused) {
  const ByteBuffer cdb = {0x2A, 0, 0, 0, 0, 0};
  EXPECT_EQ(m_drive.execute(cdb).sense, kInvalidFieldInCommand);
}

TEST_F(EmulatedDriveCase, InquiryNamesTheDriveInFixedWidth) {
  const ByteBuffer data = send({0x12, 0, 0, 0, 96}).data;
  EXPECT_EQ(data[0], 5);
  EXPECT_EQ(std::string(data.begin() + 8, data.begin() + 16), "VELMOR  ");
  EXPECT_EQ(std::string(data.begin() + 16, data.begin() + 32), "EMULATED CD-RW  ");
  EXPECT_EQ(send({0x12, 1, 0x80, 0, 96}).sense, kInvalidFieldInCommand);
}

TEST_F(EmulatedDriveCase, TheProfileFollowsTheDisc) {
  const auto profile = [&] { return loadBig16(&send({0x46, 0, 0, 0, 0, 0, 0, 0, 8}).data[6]); };
  EXPECT_EQ(profile(), 0x0009);
  EmulatedDisc disc;
  disc.medium = MediumType::kCdRw;
  insert(disc);
  EXPECT_EQ(profile(), 0x000A);
  m_drive.load(std::nullopt, false);
  EXPECT_EQ(profile(), 0x0000);
}

TEST_F(EmulatedDriveCase, MasteringIsCurrentOnlyOnABlankDisc) {
  const auto mastering = [&] { return send({0x46, 2, 0, 0x2E, 0, 0, 0, 0, 32}).data; };
  ASSERT_EQ(mastering().size(), 16u);
  EXPECT_EQ(mastering()[10] & 1, 1);
  burnTwoTracks();
  EXPECT_EQ(mastering()[10] & 1, 0);
  EXPECT_EQ(send({0x46, 3, 0, 0, 0, 0, 0, 0, 8}).sense, kInvalidFieldInCommand);
}

TEST_F(EmulatedDriveCase, EventsAreOnlyPolled) {
  EXPECT_EQ(send({0x4A, 0, 0, 0, 0x10, 0, 0, 0, 8}).sense, kInvalidFieldInCommand);
  m_drive.changeMedium(EmulatedDisc{});
  ByteBuffer event = send({0x4A, 1, 0, 0, 0x10, 0, 0, 0, 8}).data;
  ASSERT_EQ(event.size(), 8u);
  EXPECT_EQ(event[4], 2);
  EXPECT_EQ(event[5], 2);
  event = send({0x4A, 1, 0, 0, 0x10, 0, 0, 0, 8}).data;
  EXPECT_EQ(event[4], 0);
  EXPECT_EQ(send({0x4A, 1, 0, 0, 0x40, 0, 0, 0, 8}).data.size(), 4u);
}

TEST_F(EmulatedDriveCase, WriteSpeedsDescend) {
  const ByteBuffer data = send({0xAC, 0, 0, 0, 0, 0, 0, 0, 0, 32, 3, 0}).data;
  ASSERT_EQ(data.size(), 8u + 5 * 16);
  for (std::size_t i = 1; i < 5; ++i) {
    EXPECT_LT(loadBig32(&data[8 + 16 * i + 12]), loadBig32(&data[8 + 16 * (i - 1) + 12]));
  }
  EXPECT_EQ(send({0xAC, 0, 0, 0, 0, 0, 0, 0, 0, 32, 9, 0}).sense, kInvalidFieldInCommand);
}

TEST_F(EmulatedDriveCase, SubChannelsOfABlankDiscAreRefused) {
  EXPECT_EQ(send({0x42, 0, 0x40, 2, 0, 0, 0, 0, 24}).sense, kInvalidFieldInCommand);
  EXPECT_EQ(send({0x42, 0, 0, 2, 0, 0, 0, 0, 24}).data.size(), 4u);
}

struct ModeRefusal {
  const char* name;
  ByteBuffer cdb;
  ByteBuffer list;
  SenseData sense;
};

ByteBuffer writeList(uint8_t write_type, uint8_t block_type, uint8_t page = 5,
                     uint8_t length = 50) {
  ByteBuffer list(8 + 52);
  list[8] = page;
  list[9] = length;
  list[10] = write_type;
  list[12] = block_type;
  return list;
}

class ModeParametersAreRefused : public EmulatedDriveCase,
                                 public ::testing::WithParamInterface<ModeRefusal> {};

TEST_P(ModeParametersAreRefused, AndTheOldOnesStay) {
  EXPECT_EQ(send(GetParam().cdb, GetParam().list).sense, GetParam().sense);
  EXPECT_FALSE(sendCue(twoTracks()).sense);
}

const ByteBuffer kSelect = {0x55, 0x10, 0, 0, 0, 0, 0, 0, 60};

INSTANTIATE_TEST_SUITE_P(
    Because, ModeParametersAreRefused,
    ::testing::Values(
        ModeRefusal{"NoPageFormat",
                    {0x55, 0, 0, 0, 0, 0, 0, 0, 60},
                    writeList(2, 8),
                    kInvalidFieldInCommand},
        ModeRefusal{"SavingIsAsked",
                    {0x55, 0x11, 0, 0, 0, 0, 0, 0, 60},
                    writeList(2, 8),
                    kInvalidFieldInCommand},
        ModeRefusal{"TheHeaderIsCut",
                    {0x55, 0x10, 0, 0, 0, 0, 0, 0, 7},
                    ByteBuffer(7),
                    kParameterListLength},
        ModeRefusal{"ThePageIsCut",
                    {0x55, 0x10, 0, 0, 0, 0, 0, 0, 40},
                    writeList(2, 8),
                    kParameterListLength},
        ModeRefusal{"TheDataIsShort", kSelect, ByteBuffer(20), kDataPhaseError},
        ModeRefusal{"TheTypeIsTrackAtOnce", kSelect, writeList(1, 8), kInvalidFieldInParameters},
        ModeRefusal{"TheTypeIsRaw", kSelect, writeList(3, 8), kInvalidFieldInParameters},
        ModeRefusal{"TheBlockTypeIsReserved", kSelect, writeList(2, 5), kInvalidFieldInParameters},
        ModeRefusal{"ThePageIsUnknown", kSelect, writeList(2, 8, 0x0D), kInvalidFieldInParameters},
        ModeRefusal{"ThePageCannotBeChanged", kSelect, writeList(2, 8, 0x2A),
                    kInvalidFieldInParameters},
        ModeRefusal{"ThePageHasAnotherLength", kSelect, writeList(2, 8, 5, 48),
                    kInvalidFieldInParameters}),
    [](const auto& refusal) { return std::string(refusal.param.name); });

TEST_F(EmulatedDriveCase, ModePagesAreReadInBothLengths) {
  const ByteBuffer ten = send({0x5A, 0, 0x05, 0, 0, 0, 0, 0, 0xFF}).data;
  const ByteBuffer six = send({0x1A, 0, 0x05, 0, 0xFF}).data;
  ASSERT_EQ(ten.size(), 8u + 52);
  ASSERT_EQ(six.size(), 4u + 52);
  EXPECT_TRUE(std::equal(ten.begin() + 8, ten.end(), six.begin() + 4));
  EXPECT_EQ(send({0x5A, 0, 0x0D, 0, 0, 0, 0, 0, 0xFF}).sense, kInvalidFieldInCommand);
  EXPECT_EQ(send({0x5A, 0, 0xC5, 0, 0, 0, 0, 0, 0xFF}).sense, kSavingNotSupported);
}

TEST_F(EmulatedDriveCase, TheWritePageHoldsWhatWasSelected) {
  ASSERT_FALSE(modeSelect(2, true, 0).sense);
  const ByteBuffer page = send({0x5A, 0, 0x05, 0, 0, 0, 0, 0, 0xFF}).data;
  EXPECT_EQ(page[10], 0x12);
  EXPECT_EQ(page[12], 0);
}

}  // namespace
}  // namespace velmor::emulated_drive
