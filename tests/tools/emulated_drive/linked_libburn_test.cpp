// The emulator linked in, as a program under a sanitizer needs it: libburn, loaded beside it, finds
// the emulated drives through the program's own open, ioctl and stat.

// libburn.h wants its types declared first, and puts itself into namespace burn.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/types.h>
//
#include <fcntl.h>
#include <libburn/libburn.h>
#include <linux/cdrom.h>
#include <scsi/scsi.h>
#include <scsi/scsi_ioctl.h>
#include <scsi/sg.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "tests/kit/child_process.h"
#include "tests/tools/emulated_drive/two_emulated_drives.h"

namespace velmor::emulated_drive {
namespace {

namespace lb = burn;

/// Feeds libburn from memory, a sector a call.
struct MemoryTrack {
  const std::string* audio;
  std::size_t at;
};

int readSector(lb::burn_source* source, unsigned char* buffer, int size) {
  auto* track = static_cast<MemoryTrack*>(source->data);
  const std::size_t count =
      std::min(static_cast<std::size_t>(size), track->audio->size() - track->at);
  std::copy_n(track->audio->data() + track->at, count, buffer);
  track->at += count;
  return static_cast<int>(count);
}

off_t sizeOf(lb::burn_source* source) {
  return static_cast<off_t>(static_cast<MemoryTrack*>(source->data)->audio->size());
}

class LinkedIn : public TwoEmulatedDrives {
 protected:
  void SetUp() override {
    TwoEmulatedDrives::SetUp();
    ::setenv("VELMOR_EMULATED_DRIVE_DIR", (m_root / "drives").c_str(), 1);
    ASSERT_EQ(lb::burn_initialize(), 1);
    char id[] = "";
    char never[] = "NEVER";
    lb::burn_msgs_set_severities(never, never, id);
  }
  void TearDown() override {
    lb::burn_finish();
    ::unsetenv("VELMOR_EMULATED_DRIVE_DIR");
    TwoEmulatedDrives::TearDown();
  }

  /// True when libburn says that all went well.
  static bool burnTracks(const std::string& address, const std::vector<std::string>& tracks) {
    lb::burn_drive_info* info = nullptr;
    std::string path = address;
    if (lb::burn_drive_scan_and_grab(&info, path.data(), 0) != 1) {
      return false;
    }
    lb::burn_drive* drive = info[0].drive;
    lb::burn_disc* disc = lb::burn_disc_create();
    lb::burn_session* session = lb::burn_session_create();
    lb::burn_disc_add_session(disc, session, BURN_POS_END);
    std::vector<MemoryTrack> feeds;
    feeds.reserve(tracks.size());
    std::vector<lb::burn_track*> made;
    for (const std::string& audio : tracks) {
      feeds.push_back({&audio, 0});
      auto* source = static_cast<lb::burn_source*>(std::calloc(1, sizeof(lb::burn_source)));
      source->refcount = 1;
      source->read = readSector;
      source->get_size = sizeOf;
      source->data = &feeds.back();
      made.push_back(lb::burn_track_create());
      lb::burn_track_define_data(made.back(), 0, 0, 0, BURN_AUDIO);
      lb::burn_track_set_source(made.back(), source);
      lb::burn_session_add_track(session, made.back(), BURN_POS_END);
      lb::burn_source_free(source);
    }
    lb::burn_write_opts* options = lb::burn_write_opts_new(drive);
    lb::burn_write_opts_set_write_type(options, lb::BURN_WRITE_SAO, lb::BURN_BLOCK_SAO);
    lb::burn_write_opts_set_underrun_proof(options, 1);
    char reasons[BURN_REASONS_LEN];
    bool well = false;
    if (lb::burn_precheck_write(options, disc, reasons, 0) == 1) {
      lb::burn_disc_write(options, disc);
      lb::burn_progress progress{};
      while (lb::burn_drive_get_status(drive, &progress) != lb::BURN_DRIVE_IDLE) {
        ::usleep(2000);
      }
      well = lb::burn_drive_wrote_well(drive) == 1;
    }
    lb::burn_write_opts_free(options);
    for (lb::burn_track* track : made) {
      lb::burn_track_free(track);
    }
    lb::burn_session_free(session);
    lb::burn_disc_free(disc);
    lb::burn_drive_release(drive, 0);
    lb::burn_drive_info_free(info);
    return well;
  }
};

TEST_F(LinkedIn, LibburnFindsBothDrives) {
  lb::burn_drive_info* found = nullptr;
  unsigned count = 0;
  while (lb::burn_drive_scan(&found, &count) == 0) {
    ::usleep(1000);
  }
  ASSERT_EQ(count, 2u);
  EXPECT_STREQ(found[0].product, "TEST DRIVE 1");
  EXPECT_STREQ(found[1].product, "TEST DRIVE 2");
  lb::burn_drive_info_free(found);
}

TEST_F(LinkedIn, LibburnBurnsAnAlbumByteForByte) {
  const std::vector<std::string> tracks = {noise(1, 300), noise(2, 333)};
  ASSERT_TRUE(burnTracks("/dev/sr31", tracks));
  EXPECT_TRUE(burned(1) == tracks[0] + tracks[1]);
  EXPECT_EQ(disc(1).tracks[1].start(), 300);
  EXPECT_EQ(disc(1).lead_out, 633);
}

TEST_F(LinkedIn, LibburnLearnsOfABadSector) {
  change(1, [](DriveSettings& settings) { settings.faults.write_error_at = 123; });
  EXPECT_FALSE(burnTracks("/dev/sr31", {noise(1, 300)}));
  EXPECT_EQ(disc(1).state, DiscStatus::kIncomplete);
}

TEST_F(LinkedIn, ASecondExclusiveOpenFindsTheDriveBusy) {
  const int first = ::open("/dev/sr30", O_RDWR | O_NONBLOCK | O_EXCL);
  ASSERT_GE(first, 0);
  errno = 0;
  EXPECT_EQ(::open("/dev/sr30", O_RDWR | O_NONBLOCK | O_EXCL), -1);
  EXPECT_EQ(errno, EBUSY);
  const int shared = ::open("/dev/sr30", O_RDWR | O_NONBLOCK);
  EXPECT_GE(shared, 0);
  ::close(shared);
  ::close(first);
  const int again = ::open("/dev/sr30", O_RDWR | O_NONBLOCK | O_EXCL);
  EXPECT_GE(again, 0);
  ::close(again);
}

TEST_F(LinkedIn, AnotherProgramFindsTheDriveBusyWhileThisOneHoldsIt) {
  const int held = ::open("/dev/sr30", O_RDWR | O_NONBLOCK | O_EXCL);
  ASSERT_GE(held, 0);
  const auto disk_info = [&] {
    return test_kit::runProcess({VELMOR_BINARY_DIR "/velmor-emulated-drive", "run",
                                 m_root / "drives", "--", "cdrdao", "disk-info", "--device",
                                 "/dev/sr30", "--driver", "generic-mmc"});
  };
  // cdrdao then makes do with an open that is not exclusive, and says so.
  const test_kit::EndedProcess shared = disk_info();
  EXPECT_EQ(shared.status, 0);
  EXPECT_THAT(shared.all, ::testing::HasSubstr("currently in use"));
  ::close(held);
  const test_kit::EndedProcess alone = disk_info();
  EXPECT_EQ(alone.status, 0);
  EXPECT_THAT(alone.all, ::testing::Not(::testing::HasSubstr("currently in use")));
}

TEST_F(LinkedIn, AnEmptyDriveOpensOnlyForThoseWhoDoNotWaitForADisc) {
  m_drives[0].saveDisc(std::nullopt);
  errno = 0;
  EXPECT_EQ(::open("/dev/sr30", O_RDONLY), -1);
  EXPECT_EQ(errno, ENOMEDIUM);
  const int patient = ::open("/dev/sr30", O_RDONLY | O_NONBLOCK);
  EXPECT_GE(patient, 0);
  ::close(patient);
}

TEST_F(LinkedIn, TheDeviceLooksLikeABlockDeviceAndRealOnesAreHidden) {
  struct stat info {};
  ASSERT_EQ(::stat("/dev/sr30", &info), 0);
  EXPECT_TRUE(S_ISBLK(info.st_mode));
  errno = 0;
  EXPECT_EQ(::stat("/dev/sr5", &info), -1);
  EXPECT_EQ(errno, ENOENT);
  ASSERT_EQ(::stat("/dev/null", &info), 0);
  EXPECT_TRUE(S_ISCHR(info.st_mode));
}

TEST_F(LinkedIn, ADriveIsTheSameByEveryPathThatLeadsToIt) {
  struct stat info {};
  ASSERT_EQ(::stat("/dev/../dev/./sr30", &info), 0);
  EXPECT_TRUE(S_ISBLK(info.st_mode));
  // As in /dev/disk/by-id: links to the real drives are hidden with them.
  const std::string name = "/dev/shm/velmor-" + std::to_string(::getpid());
  ASSERT_EQ(::symlink("../sr30", name.c_str()), 0);
  EXPECT_EQ(::stat(name.c_str(), &info), 0);
  EXPECT_TRUE(S_ISBLK(info.st_mode));
  EXPECT_EQ(::lstat(name.c_str(), &info), 0);
  EXPECT_TRUE(S_ISLNK(info.st_mode)) << "lstat looks at the link itself";
  const int descriptor = ::open(name.c_str(), O_RDWR | O_NONBLOCK);
  EXPECT_GE(descriptor, 0);
  ::close(descriptor);
  ::unlink(name.c_str());
}

TEST_F(LinkedIn, AChangeOfDiscReachesAnOpenDrive) {
  const int descriptor = ::open("/dev/sr30", O_RDWR | O_NONBLOCK);
  ASSERT_GE(descriptor, 0);
  const auto test_unit_ready = [descriptor] {
    unsigned char cdb[6] = {};
    unsigned char sense[18] = {};
    sg_io_hdr_t header{};
    header.interface_id = 'S';
    header.dxfer_direction = SG_DXFER_NONE;
    header.cmdp = cdb;
    header.cmd_len = sizeof cdb;
    header.sbp = sense;
    header.mx_sb_len = sizeof sense;
    EXPECT_EQ(::ioctl(descriptor, SG_IO, &header), 0);
    return header.status == 0 ? 0 : sense[2] << 8 | sense[12];
  };
  EXPECT_EQ(test_unit_ready(), 0);
  m_drives[0].saveDisc(std::nullopt);
  EXPECT_EQ(test_unit_ready(), 0x628);
  EXPECT_EQ(test_unit_ready(), 0x23A);
  m_drives[0].saveDisc(EmulatedDisc{});
  EXPECT_EQ(test_unit_ready(), 0x628);
  EXPECT_EQ(test_unit_ready(), 0);
  ::close(descriptor);
}

TEST_F(LinkedIn, ABurnAfterAChangeOfDiscIsOnTheNewDisc) {
  ASSERT_TRUE(burnTracks("/dev/sr31", {noise(1, 300)}));
  m_drives[1].saveDisc(std::nullopt);
  m_drives[1].saveDisc(EmulatedDisc{});
  ASSERT_TRUE(burnTracks("/dev/sr31", {noise(2, 300)}));
  EXPECT_TRUE(burned(1) == noise(2, 300));
}

TEST_F(LinkedIn, AMissingArgumentIsRefusedAsByTheKernel) {
  const int descriptor = ::open("/dev/sr30", O_RDWR | O_NONBLOCK);
  ASSERT_GE(descriptor, 0);
  for (const unsigned long request :
       {static_cast<unsigned long>(SG_IO), static_cast<unsigned long>(SG_GET_VERSION_NUM),
        static_cast<unsigned long>(SG_GET_SCSI_ID),
        static_cast<unsigned long>(SCSI_IOCTL_GET_IDLUN),
        static_cast<unsigned long>(CDROM_SEND_PACKET), static_cast<unsigned long>(CDROM_GET_MCN),
        static_cast<unsigned long>(CDROMREADTOCHDR),
        static_cast<unsigned long>(CDROMREADTOCENTRY)}) {
    errno = 0;
    EXPECT_EQ(::ioctl(descriptor, request, nullptr), -1) << request;
    EXPECT_EQ(errno, EFAULT) << request;
  }
  ::close(descriptor);
}

TEST_F(LinkedIn, ADescriptorThatWasClosedUnseenIsNoDriveAnyMore) {
  const int descriptor = ::open("/dev/sr30", O_RDWR | O_NONBLOCK);
  ASSERT_GE(descriptor, 0);
  std::FILE* stream = ::fdopen(descriptor, "r+");
  ASSERT_NE(stream, nullptr);
  std::fclose(stream);  // libc closes it by a call of its own
  const std::string plain = m_root / "plain";
  writeFile(plain, "text");
  const int again = ::open(plain.c_str(), O_RDONLY);
  ASSERT_EQ(again, descriptor) << "the number is given out again";
  struct stat info {};
  EXPECT_EQ(::fstat(again, &info), 0);
  EXPECT_TRUE(S_ISREG(info.st_mode));
  ::close(again);
}

}  // namespace
}  // namespace velmor::emulated_drive
