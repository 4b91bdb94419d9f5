// Reading a burned disc: tables of contents, sub-channels, audio.

#include <gtest/gtest.h>

#include "tests/tools/emulated_drive/emulated_drive_case.h"

namespace velmor::emulated_drive {
namespace {

class ABurnedDisc : public EmulatedDriveCase {
 protected:
  void SetUp() override { burnTwoTracks(); }
};

TEST_F(ABurnedDisc, HasItsTracksInTheTableOfContents) {
  const ByteBuffer toc = readToc(0).data;
  const ByteBuffer expected = {0, 26,   1, 2,              // length, first and last track
                               0, 0x10, 1, 0, 0, 0, 0, 0,  //
                               0, 0x12, 2, 0, 0, 0, 1, 0x77, 0, 0x12, 0xAA, 0, 0, 0, 3, 7};
  EXPECT_EQ(toc, expected);
}

TEST_F(ABurnedDisc, TellsTimesInsteadOfAddressesWhenAsked) {
  const ByteBuffer toc = readToc(0, 2, true).data;
  const ByteBuffer expected = {0, 18,   1, 2,  //
                               0, 0x12, 2, 0, 0, 0, 7, 0, 0, 0x12, 0xAA, 0, 0, 0, 12, 25};
  EXPECT_EQ(toc, expected);
}

TEST_F(ABurnedDisc, HasItsLeadOutAlone) {
  const ByteBuffer toc = readToc(0, 0xAA).data;
  EXPECT_EQ(toc.size(), 12u);
  EXPECT_EQ(toc[6], 0xAA);
}

TEST_F(ABurnedDisc, HasNoTrackThree) {
  EXPECT_EQ(readToc(0, 3).sense, kInvalidFieldInCommand);
}

TEST_F(ABurnedDisc, GivesNoMoreThanTheHostHasRoomFor) {
  EXPECT_EQ(send({0x43, 0, 0, 0, 0, 0, 0, 0, 4}).data.size(), 4u);
}

TEST_F(ABurnedDisc, HasOneSession) {
  const ByteBuffer information = readToc(1).data;
  ASSERT_EQ(information.size(), 12u);
  EXPECT_EQ(information[2], 1);
  EXPECT_EQ(information[3], 1);
  EXPECT_EQ(information[6], 1);
}

TEST_F(ABurnedDisc, HasPointsForFirstLastLeadOutAndTracksInItsLeadIn) {
  const ByteBuffer full = readToc(2).data;
  ASSERT_EQ(full.size(), 4u + 5 * 11);
  const uint8_t points[] = {0xA0, 0xA1, 0xA2, 1, 2};
  for (std::size_t i = 0; i < std::size(points); ++i) {
    EXPECT_EQ(full[4 + 11 * i + 3], points[i]);
  }
  EXPECT_EQ(full[4 + 8], 1);        // first track
  EXPECT_EQ(full[4 + 11 + 8], 2);   // last track
  EXPECT_EQ(full[4 + 22 + 9], 12);  // lead-out, seconds
  EXPECT_EQ(full[4 + 44 + 9], 7);   // track 2, seconds
}

TEST_F(ABurnedDisc, WithoutCdTextHasNone) {
  EXPECT_EQ(readToc(5).sense, kInvalidFieldInCommand);
}

TEST_F(ABurnedDisc, StillTellsItsMake) {
  const ByteBuffer atip = readToc(4).data;
  ASSERT_EQ(atip.size(), 28u);
  EXPECT_EQ(atip[8], 97);
  EXPECT_EQ(atip[12], 79);
  EXPECT_EQ(atip[13], 59);
  EXPECT_EQ(atip[14], 70);
}

TEST_F(ABurnedDisc, IsTheSameReadByTimeAsByAddress) {
  Reply by_time = send({0xB9, 4, 0, 0, 2, 5, 0, 2, 7, 0x10});
  EXPECT_EQ(by_time.data, sectorsFrom(5, 2));
}

TEST_F(ABurnedDisc, EndsAtItsLeadOut) {
  EXPECT_EQ(readCd(774, 1).data, sectorsFrom(774, 1));
  EXPECT_EQ(readCd(774, 2).sense, kAddressOutOfRange);
  EXPECT_EQ(readCd(775, 1).sense, kAddressOutOfRange);
  EXPECT_EQ(readCd(-1, 1).sense, kAddressOutOfRange);
}

TEST_F(ABurnedDisc, HoldsNoDataSectors) {
  EXPECT_EQ(readCd(0, 1, 0x10, 0, 2).sense, kIllegalModeForTrack);
  EXPECT_EQ(send({0x28, 0, 0, 0, 0, 0, 0, 0, 1}).sense, kIllegalModeForTrack);
  EXPECT_EQ(send({0x28, 0, 0, 0, 0x10, 0, 0, 0, 1}).sense, kAddressOutOfRange);
  EXPECT_EQ(send({0xA8, 0, 0, 0, 0, 0, 0, 0, 0, 1}).sense, kIllegalModeForTrack);
}

TEST_F(ABurnedDisc, HasReservedReadFieldsRefused) {
  EXPECT_EQ(readCd(0, 1, 0x10, 3).sense, kInvalidFieldInCommand);
  EXPECT_EQ(readCd(0, 1, 0x16, 0).sense, kInvalidFieldInCommand);
  EXPECT_EQ(readCd(0, 1, 0x10, 0, 6).sense, kInvalidFieldInCommand);
}

TEST_F(ABurnedDisc, NamesTheSectorThatCannotBeRead) {
  Faults faults;
  faults.read_error_at = 20;
  m_drive.setFaults(faults);
  EXPECT_FALSE(readCd(10, 10).sense);
  const Reply reply = readCd(15, 10);
  EXPECT_EQ(reply.sense, (SenseData{0x3, 0x11, 0x06}));  // audio has the CIRC and no layer above it
  EXPECT_EQ(reply.sense->sector, 20);
}

TEST_F(ABurnedDisc, CountsDownInThePregapAndUpInTheTrack) {
  struct {
    int32_t lba;
    uint8_t q[10];
  } const expected[] = {
      {0, {0x01, 1, 1, 0, 0, 0, 0, 0, 2, 0}},
      {299, {0x01, 1, 1, 0, 0x03, 0x74, 0, 0, 0x05, 0x74}},
      {300, {0x21, 2, 0, 0, 0, 0x74, 0, 0, 0x06, 0}},
      {374, {0x21, 2, 0, 0, 0, 0, 0, 0, 0x06, 0x74}},
      {375, {0x21, 2, 1, 0, 0, 0, 0, 0, 0x07, 0}},
  };
  for (const auto& [lba, q] : expected) {
    const ByteBuffer data = readCd(lba, 1, 0x00, 2).data;
    ASSERT_EQ(data.size(), 16u);
    EXPECT_TRUE(std::equal(q, q + 10, data.begin())) << lba;
  }
}

TEST_F(ABurnedDisc, TellsThePChannelBesideTheFormattedQ) {
  EXPECT_EQ(readCd(299, 1, 0x00, 2).data[15], 0);
  EXPECT_EQ(readCd(300, 1, 0x00, 2).data[15], 0x80);
  EXPECT_EQ(readCd(374, 1, 0x00, 2).data[15], 0x80);
  EXPECT_EQ(readCd(375, 1, 0x00, 2).data[15], 0);
}

TEST_F(ABurnedDisc, CarriesTheSameQInTheRawSubChannels) {
  const ByteBuffer q = readCd(310, 1, 0x00, 2).data;
  const ByteBuffer raw = readCd(310, 1, 0x00, 1).data;
  ASSERT_EQ(raw.size(), 96u);
  ByteBuffer gathered(12);
  for (std::size_t i = 0; i < raw.size(); ++i) {
    gathered[i / 8] = static_cast<uint8_t>(gathered[i / 8] << 1 | (raw[i] >> 6 & 1));
    EXPECT_EQ(raw[i] & 0x80, 0x80) << "P marks the pregap";
  }
  EXPECT_TRUE(std::equal(gathered.begin(), gathered.end(), q.begin()));
}

TEST_F(ABurnedDisc, GivesAudioAndSubChannelSideBySide) {
  const ByteBuffer data = readCd(7, 2, 0xF8, 2).data;
  ASSERT_EQ(data.size(), 2u * (2352 + 16));
  const ByteBuffer second = sectorsFrom(8, 1);
  EXPECT_TRUE(std::equal(second.begin(), second.end(), data.begin() + 2352 + 16));
}

TEST_F(ABurnedDisc, DescribesItselfAsClosed) {
  const ByteBuffer information = send({0x51, 0, 0, 0, 0, 0, 0, 0, 34}).data;
  ASSERT_EQ(information.size(), 34u);
  EXPECT_EQ(information[2] & 0x1F, 0x0E);
  EXPECT_EQ(information[3], 1);
  EXPECT_EQ(information[6], 2);
}

TEST_F(ABurnedDisc, DescribesItsTracks) {
  const ByteBuffer second = send({0x52, 1, 0, 0, 0, 2, 0, 0, 36}).data;
  ASSERT_EQ(second.size(), 36u);
  EXPECT_EQ(second[2], 2);
  EXPECT_EQ(second[5] & 0x0F, 2);
  EXPECT_EQ(loadBig32(&second[8]), 375u);
  EXPECT_EQ(loadBig32(&second[24]), 400u);
  const ByteBuffer first = send({0x52, 0, 0, 0, 0, 10, 0, 0, 36}).data;
  EXPECT_EQ(first[2], 1);
  EXPECT_EQ(loadBig32(&first[24]), 300u);
  EXPECT_EQ(send({0x52, 1, 0, 0, 0, 3, 0, 0, 36}).sense, kInvalidFieldInCommand);
  EXPECT_EQ(send({0x52, 0, 0, 0, 3, 7, 0, 0, 36}).sense, kInvalidFieldInCommand);
}

TEST_F(ABurnedDisc, HasItsCapacityInBlocksOfData) {
  const ByteBuffer capacity = send({0x25}).data;
  EXPECT_EQ(loadBig32(capacity.data()), 774u);
  EXPECT_EQ(loadBig32(&capacity[4]), 2048u);
}

TEST_F(EmulatedDriveCase, ABlankDiscDescribesItself) {
  const ByteBuffer information = send({0x51, 0, 0, 0, 0, 0, 0, 0, 34}).data;
  EXPECT_EQ(information[2] & 0x1F, 0x00);
  EXPECT_EQ(information[21], 79);
  EXPECT_EQ(information[22], 59);
  EXPECT_EQ(information[23], 70);
  const ByteBuffer track = send({0x52, 1, 0, 0, 0, 0xFF, 0, 0, 36}).data;
  EXPECT_EQ(track[6] & 0x40, 0x40);
  EXPECT_EQ(track[7] & 1, 1);
  EXPECT_EQ(loadBig32(&track[16]), 359845u);
}

TEST_F(EmulatedDriveCase, ABlankDiscHasNoTableOfContents) {
  for (const uint8_t format : {uint8_t{0}, uint8_t{1}, uint8_t{2}, uint8_t{5}}) {
    EXPECT_EQ(readToc(format).sense, kInvalidFieldInCommand) << int{format};
  }
  EXPECT_FALSE(readToc(4).sense);
}

TEST_F(EmulatedDriveCase, TheOldPlaceOfTheTocFormatIsUnderstood) {
  EXPECT_EQ(send({0x43, 0, 0, 0, 0, 0, 0, 0, 4, 0x80}).sense, kInvalidFieldInCommand);
  burnTwoTracks();
  EXPECT_EQ(send({0x43, 0, 0, 0, 0, 0, 0, 1, 0, 0x80}).data, readToc(2).data);
}

}  // namespace
}  // namespace velmor::emulated_drive
