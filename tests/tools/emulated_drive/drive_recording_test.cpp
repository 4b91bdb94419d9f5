// Session-at-once: order, addresses, sizes, the end of a session, test writes, blanking.

#include <gtest/gtest.h>

#include "tests/tools/emulated_drive/emulated_drive_case.h"

namespace velmor::emulated_drive {
namespace {

TEST_F(EmulatedDriveCase, WritingWithoutACueSheetIsOutOfSequence) {
  EXPECT_EQ(write(-150, 1).sense, kCommandSequence);
}

TEST_F(EmulatedDriveCase, OnlyTheNextWritableAddressTakesData) {
  ASSERT_FALSE(sendCue(twoTracks()).sense);
  EXPECT_EQ(write(0, 1).sense, kInvalidAddressForWrite);
  ASSERT_FALSE(write(-150, 10).sense);
  EXPECT_EQ(write(-150, 10).sense, kInvalidAddressForWrite);
  EXPECT_EQ(write(-139, 1).sense, kInvalidAddressForWrite);
  EXPECT_FALSE(write(-140, 1).sense);
}

TEST_F(EmulatedDriveCase, ARefusedWriteLeavesTheNextAddressAlone) {
  ASSERT_FALSE(sendCue(twoTracks()).sense);
  EXPECT_EQ(write(-150, 2, ByteBuffer(2 * 2048)).sense, kDataPhaseError);
  EXPECT_FALSE(write(-150, 2).sense);
}

TEST_F(EmulatedDriveCase, NothingFitsBehindTheAnnouncedLeadOut) {
  ASSERT_FALSE(sendCue(twoTracks()).sense);
  writeUpTo(kTwoTracksEnd - 5);
  EXPECT_EQ(write(kTwoTracksEnd - 5, 6).sense, kAddressOutOfRange);
  EXPECT_FALSE(write(kTwoTracksEnd - 5, 5).sense);
  EXPECT_EQ(write(kTwoTracksEnd, 1).sense, kAddressOutOfRange);
}

TEST_F(EmulatedDriveCase, TheSessionClosesOnlyWhenTheCacheIsFlushedAtTheLeadOut) {
  ASSERT_FALSE(sendCue(twoTracks()).sense);
  writeUpTo(kTwoTracksEnd - 1);
  EXPECT_FALSE(synchronize().sense);
  EXPECT_EQ(m_drive.disc()->state, DiscStatus::kIncomplete);
  ASSERT_FALSE(write(kTwoTracksEnd - 1, 1).sense);
  EXPECT_EQ(m_drive.disc()->state, DiscStatus::kIncomplete);
  EXPECT_FALSE(synchronize().sense);
  EXPECT_EQ(m_drive.disc()->state, DiscStatus::kComplete);
}

TEST_F(EmulatedDriveCase, WrittenSectorsAreReadBackByteForByte) {
  burnTwoTracks();
  for (const int32_t lba : {0, 299, 300, 774}) {
    EXPECT_EQ(readCd(lba, 1).data, sectorsFrom(lba, 1)) << lba;
  }
}

TEST_F(EmulatedDriveCase, ATestWriteChecksEverythingAndStoresNothing) {
  ASSERT_FALSE(modeSelect(2, true).sense);
  ASSERT_FALSE(sendCue(twoTracks()).sense);
  EXPECT_EQ(write(0, 1).sense, kInvalidAddressForWrite);
  writeUpTo(kTwoTracksEnd);
  EXPECT_FALSE(synchronize().sense);
  EXPECT_EQ(m_drive.disc()->state, DiscStatus::kBlank);
  EXPECT_EQ(m_surface.written(), 0u);
  EXPECT_EQ(m_drive.generation(), 0u);
  ASSERT_FALSE(modeSelect(2, false).sense);
  burnTwoTracks();
}

TEST_F(EmulatedDriveCase, AClosedDiscTakesNothingMore) {
  burnTwoTracks();
  EXPECT_EQ(sendCue(twoTracks()).sense, kWriteProtected);
  EXPECT_EQ(write(775, 1).sense, kWriteProtected);
}

TEST_F(EmulatedDriveCase, AnInterruptedRecordingSpoilsTheDisc) {
  ASSERT_FALSE(sendCue(twoTracks()).sense);
  writeUpTo(100);
  ASSERT_FALSE(synchronize().sense);
  ASSERT_FALSE(modeSelect(2).sense);
  EXPECT_EQ(sendCue(twoTracks()).sense, kWriteProtected);
  EXPECT_EQ(readToc(0).sense, kInvalidFieldInCommand);
  EXPECT_EQ(readCd(0, 1).sense, kAddressOutOfRange);
  EXPECT_EQ(send({0x5B, 0, 2}).sense, kIncompleteTrackInSession);
}

TEST_F(EmulatedDriveCase, ModesAndTrayStayPutWhileSectorsWait) {
  ASSERT_FALSE(sendCue(twoTracks()).sense);
  ASSERT_FALSE(write(-150, 1).sense);
  EXPECT_EQ(modeSelect(2).sense, kCommandSequence);
  EXPECT_EQ(send({0x1B, 0, 0, 0, 2}).sense, kRemovalPrevented);
  EXPECT_FALSE(m_drive.trayOpen());
}

TEST_F(EmulatedDriveCase, ABadSectorEndsTheRecordingAndIsNamed) {
  Faults faults;
  faults.write_error_at = 40;
  m_drive.setFaults(faults);
  ASSERT_FALSE(sendCue(twoTracks()).sense);
  writeUpTo(40);
  const Reply reply = write(40, 13);
  EXPECT_EQ(reply.sense, kWriteError);
  EXPECT_EQ(reply.sense->sector, 40);
  EXPECT_EQ(m_drive.disc()->state, DiscStatus::kIncomplete);
  EXPECT_EQ(write(40, 13).sense, kWriteProtected);
}

TEST_F(EmulatedDriveCase, ABadSectorInMidCommandIsNamedToo) {
  Faults faults;
  faults.write_error_at = -145;
  m_drive.setFaults(faults);
  ASSERT_FALSE(sendCue(twoTracks()).sense);
  const Reply reply = write(-150, 13);
  ASSERT_EQ(reply.sense, kWriteError);
  EXPECT_EQ(senseBytes(*reply.sense)[0], 0xF0);
  EXPECT_EQ(loadBig32(&senseBytes(*reply.sense)[3]), static_cast<uint32_t>(-145));
}

TEST_F(EmulatedDriveCase, ATestWriteDoesNotFindBadSectors) {
  Faults faults;
  faults.write_error_at = 40;
  m_drive.setFaults(faults);
  ASSERT_FALSE(modeSelect(2, true).sense);
  ASSERT_FALSE(sendCue(twoTracks()).sense);
  writeUpTo(kTwoTracksEnd);
}

TEST_F(EmulatedDriveCase, ASlowDriveTellsHowLongEachWriteTakes) {
  Faults faults;
  faults.write_delay = std::chrono::milliseconds(7);
  m_drive.setFaults(faults);
  ASSERT_FALSE(sendCue(twoTracks()).sense);
  EXPECT_EQ(write(-150, 1).delay.count(), 7);
  EXPECT_EQ(testUnitReady().delay.count(), 0);
}

TEST_F(EmulatedDriveCase, APauseTheDriveMakesItselfIsNotSent) {
  std::vector<CueEntry> entries = twoTracks();
  entries[1][3] = 0x01;
  ASSERT_FALSE(sendCue(entries).sense);
  EXPECT_EQ(write(-150, 1).sense, kInvalidAddressForWrite);
  EXPECT_FALSE(write(0, 1).sense);
}

TEST_F(EmulatedDriveCase, SectorsWithSubChannelsCarry96BytesMore) {
  std::vector<CueEntry> entries = twoTracks();
  entries[1][3] = 0x40;
  ASSERT_FALSE(sendCue(entries).sense);
  EXPECT_EQ(write(-150, 1).sense, kDataPhaseError);
  EXPECT_FALSE(write(-150, 149, ByteBuffer(149 * 2448)).sense);
  // The block size changes at LBA 0: one command cannot carry both.
  EXPECT_EQ(write(-1, 2, ByteBuffer(2448 + 2352)).sense, kInvalidFieldInCommand);
}

TEST_F(EmulatedDriveCase, CdTextInTheLeadInIsReadBackOnceHoweverOftenItRepeats) {
  CdTextPack pack{0x80, 0, 0, 0, 'A', 'l', 'b', 'u', 'm', 0, 'O', 'n', 'e', 0, 'T', 'w'};
  storeBig16(&pack[16], packCheckSum(pack.data()));
  CdTextPack bad = pack;
  bad[5] ^= 1;
  ByteBuffer block;
  for (const CdTextPack& each : {pack, bad, pack, pack}) {
    for (std::size_t i = 0; i < kPackBytes; i += 3) {
      const uint32_t bits = loadBig24(&each[i]);
      for (const int shift : {18, 12, 6, 0}) {
        block.push_back(static_cast<uint8_t>(bits >> shift & 0x3F));
      }
    }
  }
  ASSERT_FALSE(sendCue(twoTracks(0x41)).sense);
  const int32_t lead_in = m_drive.disc()->lead_in;
  EXPECT_EQ(write(-150, 1).sense, kInvalidAddressForWrite);
  for (int32_t at = lead_in; at < -150; ++at) {
    ASSERT_FALSE(write(at, 1, block).sense);
  }
  writeUpTo(kTwoTracksEnd);
  synchronize();
  const ByteBuffer answer = readToc(5).data;
  ASSERT_EQ(answer.size(), 4 + kPackBytes);
  EXPECT_TRUE(std::equal(pack.begin(), pack.end(), answer.begin() + 4));
}

TEST_F(EmulatedDriveCase, OnlyARewritableDiscIsBlanked) {
  burnTwoTracks();
  EXPECT_EQ(send({0xA1, 1}).sense, kMediumNotErasable);
  EXPECT_EQ(m_drive.disc()->state, DiscStatus::kComplete);
}

TEST_F(EmulatedDriveCase, ABlankedDiscIsWrittenAnew) {
  EmulatedDisc disc;
  disc.medium = MediumType::kCdRw;
  insert(disc);
  burnTwoTracks();
  EXPECT_EQ(sendCue(twoTracks()).sense, kWriteProtected);
  ASSERT_FALSE(send({0xA1, 1}).sense);
  EXPECT_EQ(m_surface.written(), 0u);
  burnTwoTracks();
}

TEST_F(EmulatedDriveCase, AnImmediateBlankRunsOnWhileTheUnitIsPolled) {
  EmulatedDisc disc;
  disc.medium = MediumType::kCdRw;
  insert(disc);
  ASSERT_FALSE(send({0xA1, 0x11}).sense);
  const Reply running = testUnitReady();
  EXPECT_EQ(running.sense, kOperationInProgress);
  EXPECT_TRUE(running.sense->progress);
  EXPECT_TRUE(testUnitReady().sense);
  EXPECT_FALSE(testUnitReady().sense);
}

TEST_F(EmulatedDriveCase, UnknownKindsOfBlankingAreRefused) {
  EXPECT_EQ(send({0xA1, 4}).sense, kInvalidFieldInCommand);
}

TEST_F(EmulatedDriveCase, ClosingIsForAWholeSession) {
  EXPECT_EQ(send({0x5B, 0, 2}).sense, kIncompleteTrackInSession);
  EXPECT_EQ(send({0x5B, 0, 5}).sense, kInvalidFieldInCommand);
  burnTwoTracks();
  EXPECT_FALSE(send({0x5B, 0, 2}).sense);
}

TEST_F(EmulatedDriveCase, ReservingATrackBelongsToAnotherWayOfWriting) {
  EXPECT_EQ(send({0x53}).sense, kCommandSequence);
}

TEST_F(EmulatedDriveCase, TheBufferIsEmptyWhenAWriteReturns) {
  const ByteBuffer answer = send({0x5C, 0, 0, 0, 0, 0, 0, 0, 12}).data;
  ASSERT_EQ(answer.size(), 12u);
  EXPECT_EQ(loadBig32(&answer[4]), loadBig32(&answer[8]));
}

}  // namespace
}  // namespace velmor::emulated_drive
