// velmor-emulated-drive on the command line: what it makes, what it shows, and what it says when it
// cannot.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "tests/kit/child_process.h"
#include "tests/tools/emulated_drive/two_emulated_drives.h"

namespace velmor::emulated_drive {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

class EmulatedDriveCommand : public TwoEmulatedDrives {
 protected:
  /// Runs velmor-emulated-drive in the test's directory, whose drives lie in "drives". Answers its
  /// exit status; `out` and `err` are what it said.
  int run(const std::string& arguments) {
    const test_kit::EndedProcess ended = test_kit::runShell(
        "'" VELMOR_BINARY_DIR "/velmor-emulated-drive' " + arguments, {.folder = m_root});
    m_out = ended.out;
    m_err = ended.err;
    return ended.status;
  }
  DriveSettings settings(std::size_t drive) const { return m_drives[drive].settings(); }

  std::string m_out, m_err;
};

TEST_F(EmulatedDriveCommand, TellsTheVersionOfTheProject) {
  EXPECT_EQ(run("--version"), 0);
  EXPECT_EQ(m_out, "velmor-emulated-drive " VELMOR_VERSION "\n");
}

struct Mistake {
  const char* name;
  const char* arguments;
  const char* said;  // after "velmor-emulated-drive: ", with nothing behind it
};

class AnEmulatedDriveCommand : public EmulatedDriveCommand,
                               public ::testing::WithParamInterface<Mistake> {};

TEST_P(AnEmulatedDriveCommand, IsRefused) {
  writeFile(m_root / "a-file", "");
  const std::string before = contentOf(m_drives[0].settingsFile());
  EXPECT_EQ(run(GetParam().arguments), 1);
  EXPECT_EQ(m_err, "velmor-emulated-drive: " + std::string(GetParam().said) + "\n");
  EXPECT_EQ(m_out, "");
  EXPECT_EQ(contentOf(m_drives[0].settingsFile()), before);
  EXPECT_EQ(disc(0).state, DiscStatus::kBlank);
}

INSTANTIATE_TEST_SUITE_P(
    Because, AnEmulatedDriveCommand,
    ::testing::Values(
        Mistake{"ThereAreDrivesAlready", "create drives",
                "\"drives\" holds drives already; take another folder"},
        Mistake{"AFileIsInTheWay", "create a-file",
                "\"a-file/drive00\" cannot be made: Not a directory"},
        Mistake{"ThereAreNoDrives", "show .",
                "there are no drives in \".\"; \"create\" makes some"},
        Mistake{"ThereIsNoDirectory", "show nowhere",
                "there are no drives in \"nowhere\"; \"create\" makes some"},
        Mistake{"ThereIsNoSuchDrive", "insert drives 2",
                "there is no drive \"2\" in \"drives\"; it has drive00, drive01"},
        Mistake{"ThereIsNoDriveAtAll", "eject . 0",
                "there is no drive \"0\" in \".\"; \"create\" makes some"},
        Mistake{"NoDiscIsThatLong", "insert drives 0 --minutes 90",
                "--minutes is out of range: a disc holds 0 to 89.9 minutes"},
        Mistake{"NoDiscIsThatShort", "insert drives 0 --minutes=-1",
                "--minutes is out of range: a disc holds 0 to 89.9 minutes"},
        Mistake{"TheMinutesAreNoNumber", "insert drives 0 --minutes nan",
                "--minutes is out of range: a disc holds 0 to 89.9 minutes"},
        Mistake{"ASettingHasNoValue", "set drives 0 busy",
                "the setting \"busy\" has no value; give key=value"},
        Mistake{"ASwitchIsNeitherOnNorOff", "set drives 0 vendor=ACME busy=maybe",
                "\"busy = maybe\" in the command line is not understood: expected yes or no"},
        Mistake{"ASectorIsNoNumber", "set drives 0 read-error-at=12x",
                "\"read-error-at = 12x\" in the command line is not understood: expected a whole "
                "number"},
        Mistake{
            "ADelayIsNegative", "set drives 0 write-delay-ms=-1",
            "\"write-delay-ms = -1\" in the command line is not understood: expected 0 to 60000"},
        Mistake{"ThePollsAreTooMany", "set drives 0 becoming-ready-polls=1001",
                "\"becoming-ready-polls = 1001\" in the command line is not understood: expected 0 "
                "to 1000"},
        Mistake{"TheDeviceIsNone", "set drives 0 device=/tmp/sr0",
                "\"device = /tmp/sr0\" in the command line is not understood: expected a path "
                "below /dev"},
        Mistake{"ASettingIsUnknown", "set drives 0 colour=red",
                "\"colour = red\" in the command line is not understood: expected device, vendor, "
                "product, revision, "
                "write-error-at, read-error-at, write-delay-ms, becoming-ready-polls, busy or "
                "deny as the key"},
        Mistake{"NothingWasBurned", "extract drives 0 album.raw",
                "\"drives/drive00\" holds no closed disc to take audio from; burn one first"},
        Mistake{"TheProgramIsMissing", "run drives -- ./no-such-program",
                "\"./no-such-program\" cannot be run: No such file or directory"}),
    [](const auto& mistake) { return std::string(mistake.param.name); });

TEST_F(EmulatedDriveCommand, ASettingsFileThatCannotBeReadIsNamedWithItsLine) {
  writeFile(m_drives[1].settingsFile(), "# mine\ndevice = /dev/sr31\nbusy\n");
  EXPECT_EQ(run("show drives"), 1);
  EXPECT_EQ(
      m_err,
      "velmor-emulated-drive: line 3 of \"drives/drive01/drive.conf\" has no \"=\"; write key = "
      "value\n");
}

TEST_F(EmulatedDriveCommand, AWordThatIsNoCommandIsRefused) {
  EXPECT_EQ(run(""), 2);
  EXPECT_EQ(m_err, "velmor-emulated-drive: a subcommand is required; --help lists what there is\n");
  EXPECT_EQ(run("insert drives 0 --medium dvd"), 2);
  EXPECT_THAT(m_err, HasSubstr("--medium: dvd not in {cd-r,cd-rw}"));
  EXPECT_EQ(run("create elsewhere --drives 9"), 2);
  EXPECT_THAT(m_err, HasSubstr("9 not in range"));
  EXPECT_FALSE(fs::exists(m_root / "elsewhere"));
}

TEST_F(EmulatedDriveCommand, ANewDirectoryHasDrivesWithBlankDiscs) {
  ASSERT_EQ(run("create new --drives 2 --first-device 4 --medium cd-rw --minutes 10"), 0) << m_err;
  EXPECT_EQ(m_out, "drive00 /dev/sr4\ndrive01 /dev/sr5\n");
  ASSERT_EQ(run("show new"), 0);
  EXPECT_EQ(m_out,
            "drive00: /dev/sr4, VELMOR RECORDER 1\n"
            "  CD-RW, room for 10:00:00 (45000 sectors), blank\n"
            "drive01: /dev/sr5, VELMOR RECORDER 2\n"
            "  CD-RW, room for 10:00:00 (45000 sectors), blank\n");
}

TEST_F(EmulatedDriveCommand, ADiscIsPutInAndTakenOut) {
  ASSERT_EQ(run("insert drives /dev/sr31 --closed --capacity 1000"), 0) << m_err;
  ASSERT_EQ(run("show drives 1"), 0);
  EXPECT_EQ(m_out,
            "drive01: /dev/sr31, VELMOR TEST DRIVE 2\n"
            "  CD-R, room for 00:13:25 (1000 sectors), closed: one session\n"
            "  track  pregap    start     length    ISRC          flags\n"
            "      1  00:00:00  00:02:00  00:04:00  -             \n"
            "  lead-out         00:06:00  (300 sectors)\n"
            "  MCN: none\n"
            "  CD-TEXT: none\n");
  ASSERT_EQ(run("eject drives drive01"), 0) << m_err;
  ASSERT_EQ(run("show drives 1"), 0);
  EXPECT_EQ(m_out, "drive01: /dev/sr31, VELMOR TEST DRIVE 2\n  no disc\n");
}

TEST_F(EmulatedDriveCommand, FaultsAreShownAndHealed) {
  ASSERT_EQ(run("set drives 0 write-error-at=500 read-error-at=-10 write-delay-ms=5 busy=yes "
                "deny=yes becoming-ready-polls=3"),
            0)
      << m_err;
  m_drives[0].saveTray(true);
  ASSERT_EQ(run("show drives 0"), 0);
  EXPECT_EQ(m_out,
            "drive00: /dev/sr30, VELMOR TEST DRIVE 1\n"
            "  fault: the drive is busy\n"
            "  fault: the device may not be opened\n"
            "  fault: sector 500 cannot be written\n"
            "  fault: sector -10 cannot be read\n"
            "  fault: each write takes 5 ms\n"
            "  fault: a new disc is ready after 3 polls\n"
            "  the tray is open\n"
            "  CD-R, room for 79:57:70 (359845 sectors), blank\n");
  ASSERT_EQ(run("set drives 0 write-error-at=none read-error-at=none write-delay-ms=0 busy=no "
                "deny=no becoming-ready-polls=0"),
            0)
      << m_err;
  ASSERT_EQ(run("show drives 0"), 0);
  EXPECT_THAT(m_out, Not(HasSubstr("fault")));
}

TEST_F(EmulatedDriveCommand, AudioIsExtractedByDiscAndByTrack) {
  EmulatedDisc recorded = disc(0);
  recorded.state = DiscStatus::kComplete;
  recorded.tracks = {{1, 0, -150, {0}, ""}, {2, 0, 300, {375}, ""}};
  recorded.lead_out = 700;
  m_drives[0].saveDisc(recorded);
  const std::string audio = noise(1, 700);
  writeFile(m_drives[0].audioFile(), std::string(std::size_t{150} * kSectorBytes, '\0') + audio);
  ASSERT_EQ(run("extract drives 0 album.raw"), 0) << m_err;
  EXPECT_EQ(m_out, "700 sectors\n");
  EXPECT_TRUE(contentOf(m_root / "album.raw") == audio);
  ASSERT_EQ(run("extract drives 0 one.raw --track 1"), 0) << m_err;
  EXPECT_EQ(m_out, "300 sectors\n");
  EXPECT_TRUE(contentOf(m_root / "one.raw") == audio.substr(0, std::size_t{300} * kSectorBytes));
  ASSERT_EQ(run("extract drives 0 two.raw --track 2"), 0) << m_err;
  EXPECT_TRUE(contentOf(m_root / "two.raw") == audio.substr(std::size_t{375} * kSectorBytes));
  EXPECT_EQ(run("extract drives 0 three.raw --track 3"), 1);
  EXPECT_EQ(m_err, "velmor-emulated-drive: --track 3 is not there: the disc has tracks 1 to 2\n");
  EXPECT_EQ(run("extract drives 0 nowhere/album.raw"), 1);
  EXPECT_EQ(
      m_err,
      "velmor-emulated-drive: \"nowhere/album.raw\" cannot be written; choose another place\n");
}

TEST_F(EmulatedDriveCommand, ARecordingThatBrokeOffIsCalledSo) {
  EmulatedDisc broken = disc(0);
  broken.state = DiscStatus::kIncomplete;
  m_drives[0].saveDisc(broken);
  ASSERT_EQ(run("show drives 0"), 0);
  EXPECT_THAT(m_out, HasSubstr("incomplete: a recording was begun and not finished"));
}

TEST_F(EmulatedDriveCommand, AProgramThatSeesTheDrivesKeepsItsExitStatus) {
  EXPECT_EQ(run("run drives -- sh -c 'exit 7'"), 7);
  EXPECT_EQ(m_err, "");
}

TEST_F(EmulatedDriveCommand, ADirectoryWithoutDrivesIsToldToTheProgramsUser) {
  EXPECT_EQ(run("run . -- test -e /dev/sr30"), 1);
  EXPECT_THAT(m_err, AllOf(StartsWith("velmor-emulated-drive: "),
                           HasSubstr("\" holds no drive; velmor-emulated-drive create makes one")));
}

TEST_F(EmulatedDriveCommand, ADriveThatCannotBeReadIsLeftOutAndSaidSo) {
  writeFile(m_drives[1].settingsFile(), "busy = maybe\n");
  EXPECT_EQ(run("run drives -- test -e /dev/sr30"), 0);
  EXPECT_THAT(m_err, HasSubstr("\"busy = maybe\" in line 1 of \""));
  EXPECT_EQ(run("run drives -- test -e /dev/sr31"), 1);
}

}  // namespace
}  // namespace velmor::emulated_drive
