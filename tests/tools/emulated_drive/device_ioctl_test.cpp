// The ioctls of an emulated device as a program meets them, and the trace of what it asked.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/cdrom.h>
#include <scsi/sg.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "tests/tools/emulated_drive/two_emulated_drives.h"
#include "tools/emulated_drive/interpose/trace.h"

namespace velmor::emulated_drive {
namespace {

namespace fs = std::filesystem;

/// The first drive, open.
class AnOpenDrive : public TwoEmulatedDrives {
 protected:
  void SetUp() override {
    TwoEmulatedDrives::SetUp();
    ::setenv("VELMOR_EMULATED_DRIVE_DIR", (m_root / "drives").c_str(), 1);
    m_drive = ::open("/dev/sr30", O_RDWR | O_NONBLOCK);
    ASSERT_GE(m_drive, 0);
  }
  void TearDown() override {
    ::close(m_drive);
    ::unsetenv("VELMOR_EMULATED_DRIVE_DIR");
    ::unsetenv(kTraceVariable);
    TwoEmulatedDrives::TearDown();
  }
  void traceInto(const fs::path& file) { ::setenv(kTraceVariable, file.c_str(), 1); }

  /// 0 or the errno of a request.
  int reasonOf(unsigned long request, void* argument = nullptr) const {
    errno = 0;
    return ::ioctl(m_drive, request, argument) == -1 ? errno : 0;
  }
  sg_io_hdr_t reading(unsigned char* cdb, unsigned char length) {
    sg_io_hdr_t header{};
    header.interface_id = 'S';
    header.dxfer_direction = SG_DXFER_FROM_DEV;
    header.cmdp = cdb;
    header.cmd_len = length;
    header.dxferp = m_answer.data();
    header.dxfer_len = static_cast<unsigned>(m_answer.size());
    header.sbp = m_sense.data();
    header.mx_sb_len = static_cast<unsigned char>(m_sense.size());
    return header;
  }
  void closeTheDiscWithTwoTracks() {
    EmulatedDisc recorded = disc(0);
    recorded.state = DiscStatus::kComplete;
    recorded.tracks = {{1, 0, -150, {0}, ""}, {2, 2, 300, {375}, ""}};
    recorded.lead_out = 700;
    recorded.mcn = "4006381333931";
    m_drives[0].saveDisc(recorded);
    reasonOf(CDROMEJECT);  // hears of the change of disc
  }

  int m_drive = -1;
  std::array<unsigned char, 96> m_answer{};
  std::array<unsigned char, 18> m_sense{};
  unsigned char m_inquiry[6] = {0x12, 0, 0, 0, 36, 0};
  unsigned char m_test_unit_ready[6] = {};
};

TEST_F(AnOpenDrive, AnswersACommandAndTellsWhatWasLeftOver) {
  sg_io_hdr_t header = reading(m_inquiry, sizeof m_inquiry);
  ASSERT_EQ(reasonOf(SG_IO, &header), 0);
  EXPECT_EQ(header.status, 0);
  EXPECT_EQ(header.resid, 96 - 36);
  EXPECT_EQ(std::string(m_answer.begin() + 16, m_answer.begin() + 28), "TEST DRIVE 1");
}

TEST_F(AnOpenDrive, CutsTheSenseDataToTheRoomThatThereIs) {
  unsigned char unknown[6] = {0x0F};
  sg_io_hdr_t header = reading(unknown, sizeof unknown);
  header.mx_sb_len = 3;
  ASSERT_EQ(reasonOf(SG_IO, &header), 0);
  EXPECT_EQ(header.status, 2) << "CHECK CONDITION";
  EXPECT_EQ(header.sb_len_wr, 3);
  EXPECT_EQ(m_sense[2], 0x5);
  EXPECT_EQ(m_sense[12], 0);
}

TEST_F(AnOpenDrive, RefusesWhatTheKernelRefuses) {
  sg_io_hdr_t header = reading(m_inquiry, sizeof m_inquiry);
  header.interface_id = 'Q';
  EXPECT_EQ(reasonOf(SG_IO, &header), EINVAL);
  header = reading(m_inquiry, sizeof m_inquiry);
  header.iovec_count = 1;
  EXPECT_EQ(reasonOf(SG_IO, &header), EINVAL);
  header = reading(m_inquiry, 0);
  EXPECT_EQ(reasonOf(SG_IO, &header), EMSGSIZE);
  header = reading(m_inquiry, 17);
  EXPECT_EQ(reasonOf(SG_IO, &header), EMSGSIZE);
  header = reading(m_inquiry, sizeof m_inquiry);
  header.dxfer_len = (1u << 20) + 1;
  EXPECT_EQ(reasonOf(SG_IO, &header), ENOMEM);
  EXPECT_EQ(reasonOf(CDROMPLAYMSF), ENOTTY);
}

// cdrdao looks at errno a second time after an open that went well.
TEST_F(AnOpenDrive, LeavesErrnoAloneWhereNothingFails) {
  sg_io_hdr_t header = reading(m_inquiry, sizeof m_inquiry);
  struct stat info {};
  errno = EBUSY;
  const int another = ::open("/dev/sr30", O_RDONLY | O_NONBLOCK);
  EXPECT_EQ(errno, EBUSY) << "open";
  EXPECT_EQ(::ioctl(another, SG_IO, &header), 0);
  EXPECT_EQ(errno, EBUSY) << "ioctl";
  EXPECT_EQ(::fstat(another, &info) + ::stat("/dev/sr30", &info), 0);
  EXPECT_EQ(errno, EBUSY) << "stat";
  EXPECT_EQ(::close(another), 0);
  EXPECT_EQ(errno, EBUSY) << "close";
}

TEST_F(AnOpenDrive, AnswersPacketsOfTheCdRomLayer) {
  cdrom_generic_command packet{};
  std::copy(std::begin(m_inquiry), std::end(m_inquiry), packet.cmd);
  packet.buffer = m_answer.data();
  packet.buflen = 36;
  packet.data_direction = CGC_DATA_READ;
  EXPECT_EQ(reasonOf(CDROM_SEND_PACKET, &packet), 0);
  EXPECT_EQ(packet.stat, 0);
  EXPECT_EQ(m_answer[0], 0x05);
  request_sense told{};
  packet.cmd[0] = 0x0F;
  packet.sense = &told;
  EXPECT_EQ(reasonOf(CDROM_SEND_PACKET, &packet), EIO);
  EXPECT_NE(packet.stat, 0);
  EXPECT_EQ(told.sense_key, 0x5);
  EXPECT_EQ(told.asc, 0x20);
}

TEST_F(AnOpenDrive, ReadsTheTableOfContents) {
  cdrom_tochdr head{};
  cdrom_tocentry entry{};
  entry.cdte_format = CDROM_MSF;
  EXPECT_EQ(reasonOf(CDROMREADTOCHDR, &head), EIO) << "a blank disc has none";
  EXPECT_EQ(reasonOf(CDROMREADTOCENTRY, &entry), EIO);
  closeTheDiscWithTwoTracks();
  ASSERT_EQ(reasonOf(CDROMREADTOCHDR, &head), 0);
  EXPECT_EQ(head.cdth_trk0, 1);
  EXPECT_EQ(head.cdth_trk1, 2);
  entry.cdte_track = 2;
  ASSERT_EQ(reasonOf(CDROMREADTOCENTRY, &entry), 0);
  EXPECT_EQ(entry.cdte_ctrl, 2);
  EXPECT_EQ(entry.cdte_addr.msf.second, 7);
  EXPECT_EQ(entry.cdte_addr.msf.frame, 0);
  entry.cdte_track = CDROM_LEADOUT;
  entry.cdte_format = CDROM_LBA;
  ASSERT_EQ(reasonOf(CDROMREADTOCENTRY, &entry), 0);
  EXPECT_EQ(entry.cdte_addr.lba, 700);
  entry.cdte_track = 3;
  EXPECT_EQ(reasonOf(CDROMREADTOCENTRY, &entry), EINVAL);
}

TEST_F(AnOpenDrive, ReadsTheMcn) {
  cdrom_mcn number{};
  EXPECT_EQ(reasonOf(CDROM_GET_MCN, &number), EIO);
  closeTheDiscWithTwoTracks();
  ASSERT_EQ(reasonOf(CDROM_GET_MCN, &number), 0);
  EXPECT_STREQ(reinterpret_cast<const char*>(number.medium_catalog_number), "4006381333931");
}

TEST_F(AnOpenDrive, MovesItsTrayUnlessItIsLocked) {
  EXPECT_EQ(::ioctl(m_drive, CDROM_DRIVE_STATUS, CDSL_CURRENT), CDS_DISC_OK);
  unsigned char prevent[6] = {0x1E, 0, 0, 0, 1, 0};
  sg_io_hdr_t header = reading(prevent, sizeof prevent);
  ASSERT_EQ(reasonOf(SG_IO, &header), 0);
  EXPECT_EQ(reasonOf(CDROMEJECT), EIO);
  prevent[4] = 0;
  ASSERT_EQ(reasonOf(SG_IO, &header), 0);
  EXPECT_EQ(reasonOf(CDROMEJECT), 0);
  EXPECT_EQ(::ioctl(m_drive, CDROM_DRIVE_STATUS, CDSL_CURRENT), CDS_TRAY_OPEN);
  EXPECT_EQ(reasonOf(CDROMCLOSETRAY), 0);
  m_drives[0].saveDisc(std::nullopt);
  EXPECT_EQ(::ioctl(m_drive, CDROM_DRIVE_STATUS, CDSL_CURRENT), CDS_NO_DISC);
}

TEST_F(AnOpenDrive, WhoseFolderCannotBeReadFailsAsADeviceDoes) {
  writeFile(m_drives[0].discFile(), "medium = vinyl\n");
  ::testing::internal::CaptureStderr();
  sg_io_hdr_t header = reading(m_test_unit_ready, sizeof m_test_unit_ready);
  EXPECT_EQ(reasonOf(SG_IO, &header), EIO);
  EXPECT_THAT(::testing::internal::GetCapturedStderr(), ::testing::HasSubstr("cd-r or cd-rw"));
}

TEST_F(AnOpenDrive, IsTracedCommandByCommand) {
  traceInto(m_root / "trace");
  sg_io_hdr_t header = reading(m_inquiry, sizeof m_inquiry);
  ASSERT_EQ(reasonOf(SG_IO, &header), 0);
  m_drives[0].saveDisc(std::nullopt);
  header = reading(m_test_unit_ready, sizeof m_test_unit_ready);
  ASSERT_EQ(reasonOf(SG_IO, &header), 0);
  ASSERT_EQ(reasonOf(SG_IO, &header), 0);
  EXPECT_EQ(contentOf(m_root / "trace"),
            "/dev/sr30: 12 00 00 00 24 00  out 0 in 36\n"
            "/dev/sr30: 00 00 00 00 00 00  out 0 in 0  sense 6/28/00\n"
            "/dev/sr30: 00 00 00 00 00 00  out 0 in 0  sense 2/3A/01\n");
}

TEST_F(AnOpenDrive, TracesWhatTheHostSends) {
  traceInto(m_root / "trace");
  unsigned char write[10] = {0x2A, 0, 0xFF, 0xFF, 0xFF, 0x6A, 0, 0, 1, 0};
  sg_io_hdr_t header = reading(write, sizeof write);
  header.dxfer_direction = SG_DXFER_TO_DEV;
  ASSERT_EQ(reasonOf(SG_IO, &header), 0);
  EXPECT_EQ(contentOf(m_root / "trace"),
            "/dev/sr30: 2A 00 FF FF FF 6A 00 00 01 00  out 96 in 0  sense 5/2C/00\n");
}

TEST_F(AnOpenDrive, IsNotTracedIntoAnEmptyNameAndNotDisturbedByAnImpossibleOne) {
  traceInto("");
  sg_io_hdr_t header = reading(m_inquiry, sizeof m_inquiry);
  EXPECT_EQ(reasonOf(SG_IO, &header), 0);
  traceInto(m_root / "nowhere" / "trace");
  EXPECT_EQ(reasonOf(SG_IO, &header), 0);
  EXPECT_EQ(header.status, 0);
  EXPECT_FALSE(fs::exists(m_root / "nowhere"));
}

}  // namespace
}  // namespace velmor::emulated_drive
