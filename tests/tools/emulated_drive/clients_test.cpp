// Packaged programs burn to the emulated drives and read back from them: three clients with habits
// of their own, none of which knows that there is no hardware.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>

#include "tests/kit/child_process.h"
#include "tests/tools/emulated_drive/two_emulated_drives.h"

namespace velmor::emulated_drive {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

class Clients : public TwoEmulatedDrives {
 protected:
  void SetUp() override {
    TwoEmulatedDrives::SetUp();
    const int lengths[] = {350, 300, 420};
    for (unsigned i = 0; i < std::size(lengths); ++i) {
      m_tracks.push_back(noise(i, lengths[i]));
      m_album += m_tracks.back();
      writeFile(m_root / ("track" + std::to_string(i + 1) + ".wav"), wavFile(m_tracks.back()));
    }
    writeFile(m_root / "album.toc", R"(CD_DA
CATALOG "4006381333931"
CD_TEXT { LANGUAGE_MAP { 0 : EN } LANGUAGE 0 { TITLE "Night" PERFORMER "The Band" } }
TRACK AUDIO
ISRC "DEABC2000001"
CD_TEXT { LANGUAGE 0 { TITLE "One" PERFORMER "The Band" } }
FILE "track1.wav" 0
TRACK AUDIO
COPY
ISRC "DEABC2000002"
CD_TEXT { LANGUAGE 0 { TITLE "Two" PERFORMER "The Band" } }
FILE "track2.wav" 0
TRACK AUDIO
ISRC "DEABC2000003"
CD_TEXT { LANGUAGE 0 { TITLE "Three" PERFORMER "A Guest" } }
FILE "track3.wav" 0
START 00:01:00
INDEX 00:02:00
)");
  }

  /// Runs a shell line that sees the drives, in the test's directory. `output` is what it said.
  int run(const std::string& line) {
    writeFile(m_root / "line.sh", "exec 2>&1\n" + line + "\n");
    const test_kit::EndedProcess ended =
        test_kit::runProcess({VELMOR_BINARY_DIR "/velmor-emulated-drive", "run", m_root / "drives",
                              "--", "sh", m_root / "line.sh"},
                             {.folder = m_root, .limit = std::chrono::seconds(30)});
    m_output = ended.all;
    return ended.status;
  }
  int cdrdao(const std::string& what, const std::string& rest, int drive = 1) {
    return run("cdrdao " + what + " --device " + device(drive) + " --driver generic-mmc:0x10 " +
               rest);
  }
  int burnWithCdrdao(const std::string& more = "") {
    return cdrdao("write", "-n " + more + " album.toc");
  }

  std::vector<int32_t> starts(int drive) const {
    std::vector<int32_t> found;
    for (const RecordedTrack& track : disc(drive).tracks) {
      found.push_back(track.start());
    }
    return found;
  }

  std::vector<std::string> m_tracks;
  std::string m_album;
  std::string m_output;
};

TEST_F(Clients, CdrskinBurnsAnAlbumByteForByte) {
  ASSERT_EQ(run("cdrskin dev=/dev/sr31 -sao -audio track1.wav track2.wav track3.wav"), 0)
      << m_output;
  EXPECT_TRUE(burned(1) == m_album);
  EXPECT_THAT(starts(1), ElementsAre(0, 350, 650));
  EXPECT_EQ(disc(1).lead_out, 1070);
  EXPECT_EQ(disc(0).state, DiscStatus::kBlank);
}

TEST_F(Clients, WodimBurnsAnAlbumByteForByte) {
  ASSERT_EQ(run("wodim dev=/dev/sr30 gracetime=0 -sao -text -useinfo -pad -audio track1.wav "
                "track2.wav track3.wav"),
            0)
      << m_output;
  EXPECT_TRUE(burned(0) == m_album);
  EXPECT_THAT(starts(0), ElementsAre(0, 350, 650));
  EXPECT_FALSE(disc(0).cd_text.empty());
}

TEST_F(Clients, CdrdaoBurnsCodesTextsPregapAndIndicesAndCdrskinReadsThem) {
  ASSERT_EQ(burnWithCdrdao(), 0) << m_output;
  EXPECT_TRUE(burned(1) == m_album);
  EXPECT_THAT(starts(1), ElementsAre(0, 350, 725));
  EXPECT_EQ(disc(1).tracks[2].pregap_start, 650);
  EXPECT_THAT(disc(1).tracks[2].indices, ElementsAre(725, 875));
  EXPECT_EQ(disc(1).tracks[1].control, 2);
  EXPECT_EQ(disc(1).mcn, "4006381333931");
  EXPECT_EQ(disc(1).tracks[1].isrc, "DEABC2000002");

  ASSERT_EQ(run("mkdir audio; cdrskin dev=/dev/sr31 -toc extract_audio_to=audio "
                "cdtext_to_v07t=text"),
            0)
      << m_output;
  EXPECT_THAT(m_output, HasSubstr("track:   3 lba:       725"));
  EXPECT_THAT(m_output, HasSubstr("track:lout lba:      1070"));
  EXPECT_TRUE(contentOf(m_root / "audio/01.wav").substr(44) == m_tracks[0]);
  EXPECT_TRUE(contentOf(m_root / "audio/03.wav").substr(44) == m_tracks[2].substr(75 * 2352));
  const std::string text = contentOf(m_root / "text");
  EXPECT_THAT(text, HasSubstr("Album Title         = Night"));
  EXPECT_THAT(text, HasSubstr("Track 03 Artist     = A Guest"));
}

TEST_F(Clients, CdrdaoReadsItsDiscBack) {
  ASSERT_EQ(burnWithCdrdao(), 0) << m_output;
  ASSERT_EQ(cdrdao("read-cd", "--datafile copy.bin copy.toc"), 0) << m_output;
  const std::string toc = contentOf(m_root / "copy.toc");
  EXPECT_THAT(toc, HasSubstr("CATALOG \"4006381333931\""));
  EXPECT_THAT(toc, HasSubstr("TITLE \"Three\""));
  EXPECT_THAT(toc, HasSubstr("INDEX 00:02:00"));
  std::string swapped = contentOf(m_root / "copy.bin");  // cdrdao's files are big-endian
  for (std::size_t i = 0; i + 1 < swapped.size(); i += 2) {
    std::swap(swapped[i], swapped[i + 1]);
  }
  EXPECT_TRUE(swapped == m_album);
}

// cdrdao's "read-cd" is no witness here: version 1.2.4 counts a pregap from the end of the block it
// happens to read, so its answer changes with --paranoia-mode. "read-toc" looks for the first
// sector of index 0 in the Q sub-channel.
TEST_F(Clients, CdrdaoFindsTheWholePregapInTheSubChannel) {
  ASSERT_EQ(burnWithCdrdao(), 0) << m_output;
  ASSERT_EQ(cdrdao("read-toc", "found.toc"), 0) << m_output;
  const std::string toc = contentOf(m_root / "found.toc");
  EXPECT_THAT(toc, HasSubstr("START 00:01:00"));
  EXPECT_THAT(toc, HasSubstr("INDEX 00:02:00"));
}

TEST_F(Clients, CdInfoReadsTracksCodesAndTexts) {
  ASSERT_EQ(burnWithCdrdao(), 0) << m_output;
  ASSERT_EQ(run("cd-info --no-header --no-device-info -C /dev/sr31"), 0) << m_output;
  for (const char* expected :
       {"2: 00:06:50  000350 audio", "3: 00:11:50  000725 audio", "00:16:20  001070 leadout",
        "(MCN): 4006381333931", "TRACK  3 ISRC: DEABC2000003", "TITLE: Three"}) {
    EXPECT_THAT(m_output, HasSubstr(expected));
  }
}

TEST_F(Clients, ATestWriteLeavesTheDiscBlank) {
  ASSERT_EQ(burnWithCdrdao("--simulate"), 0) << m_output;
  EXPECT_EQ(disc(1).state, DiscStatus::kBlank);
  EXPECT_EQ(burned(1), "");
}

TEST_F(Clients, ARewritableDiscIsBlankedAndBurnedAgain) {
  EmulatedDisc rewritable;
  rewritable.medium = MediumType::kCdRw;
  m_drives[1].saveDisc(rewritable);
  ASSERT_EQ(burnWithCdrdao(), 0) << m_output;
  ASSERT_EQ(run("cdrskin dev=/dev/sr31 blank=fast"), 0) << m_output;
  EXPECT_EQ(disc(1).state, DiscStatus::kBlank);
  ASSERT_EQ(burnWithCdrdao(), 0) << m_output;
  EXPECT_TRUE(burned(1) == m_album);
}

TEST_F(Clients, CdrskinListsBothDrives) {
  ASSERT_EQ(run("cdrskin --devices"), 0);
  EXPECT_THAT(m_output, HasSubstr("dev='/dev/sr30'"));
  EXPECT_THAT(m_output, HasSubstr("'TEST DRIVE 2'"));
}

TEST_F(Clients, WodimListsBothDrivesUnderTheirFormerNames) {
  EXPECT_EQ(run("wodim --devices"), 2) << m_output;  // wodim's status is the number of drives
  EXPECT_THAT(m_output, HasSubstr("dev='/dev/scd30'"));
  EXPECT_THAT(m_output, HasSubstr("dev='/dev/scd31'"));
  EXPECT_THAT(m_output, HasSubstr("'TEST DRIVE 2'"));
  ASSERT_EQ(run("wodim dev=/dev/scd31 gracetime=0 -sao -audio track1.wav"), 0) << m_output;
  EXPECT_TRUE(burned(1) == m_tracks[0]);
}

TEST_F(Clients, ABadSectorFailsTheBurn) {
  change(1, [](DriveSettings& settings) { settings.faults.write_error_at = 500; });
  EXPECT_NE(burnWithCdrdao(), 0);
  EXPECT_THAT(m_output, HasSubstr("Medium Error"));
  EXPECT_EQ(disc(1).state, DiscStatus::kIncomplete);
}

TEST_F(Clients, AnEmptyTrayFailsTheBurn) {
  m_drives[1].saveDisc(std::nullopt);
  EXPECT_NE(run("cdrskin dev=/dev/sr31 -sao -audio track1.wav"), 0) << m_output;
  EXPECT_THAT(m_output, HasSubstr("no media"));
}

TEST_F(Clients, AClosedDiscFailsTheBurn) {
  ASSERT_EQ(burnWithCdrdao(), 0);
  EXPECT_NE(run("cdrskin dev=/dev/sr31 -sao -audio track1.wav"), 0) << m_output;
  EXPECT_THAT(m_output, HasSubstr("closed"));
  EXPECT_TRUE(burned(1) == m_album);
}

TEST_F(Clients, ASmallDiscFailsTheBurnBeforeAnythingIsWritten) {
  EmulatedDisc small;
  small.capacity = 1000;
  m_drives[1].saveDisc(small);
  EXPECT_NE(burnWithCdrdao(), 0) << m_output;
  EXPECT_EQ(disc(1).state, DiscStatus::kBlank);
}

TEST_F(Clients, ASlowDriveTakesItsTime) {
  change(1, [](DriveSettings& settings) {
    settings.faults.write_delay = std::chrono::milliseconds(5);
  });
  const auto before = std::chrono::steady_clock::now();
  ASSERT_EQ(burnWithCdrdao(), 0) << m_output;
  // 1220 sectors in commands of at most 64 KiB are at least 45 writes.
  EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(45 * 5));
  EXPECT_TRUE(burned(1) == m_album);
}

TEST_F(Clients, ABusyDriveIsNotOpened) {
  change(1, [](DriveSettings& settings) { settings.busy = true; });
  EXPECT_NE(burnWithCdrdao(), 0);
  EXPECT_THAT(m_output, HasSubstr("resource busy"));
}

TEST_F(Clients, ADriveWithoutPermissionIsNotOpened) {
  change(1, [](DriveSettings& settings) { settings.deny = true; });
  EXPECT_NE(burnWithCdrdao(), 0);
  EXPECT_THAT(m_output, HasSubstr("ermission denied"));
  EXPECT_EQ(run("cdrskin --devices"), 0);
  EXPECT_THAT(m_output, HasSubstr("TEST DRIVE 1"));
}

TEST_F(Clients, RealDrivesAreHiddenWhileEmulationIsOn) {
  EXPECT_NE(run("cdrskin dev=/dev/sr0 -toc"), 0);
  EXPECT_NE(run("test -e /dev/sr29"), 0);
  EXPECT_EQ(run("test -b /dev/sr30"), 0);
}

}  // namespace
}  // namespace velmor::emulated_drive
