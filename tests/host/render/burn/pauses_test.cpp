// The pauses of a burned disc, sector by sector in the Q channel, beside the discs that packaged
// programs burn from the portable sheet of the same album.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/render/burn/burn_program_case.h"
#include "tools/emulated_drive/disc/q_frame.h"

namespace burn_test {
namespace {

using testing::HasSubstr;
using velmor::emulated_drive::DiscStatus;
using velmor::emulated_drive::EmulatedDisc;
using velmor::emulated_drive::RecordedTrack;

constexpr const char* kSongs = "song1.wav song2.wav song3.wav --isrc 2=DEABC2000002";
constexpr const char* kSheet = "in.cue";

struct LeadIns {
  const char* name;
  const char* options;
  bool pauses;  ///< between tracks
  const char* inputs = kSongs;
};

class Pauses : public BurnProgramCase, public testing::WithParamInterface<LeadIns> {
 protected:
  /// A pause that ends the file before, and one that no file holds.
  void SetUp() override {
    BurnProgramCase::SetUp();
    test_kit::writeFile(m_root / kSheet,
                        "FILE \"song1.wav\" WAVE\n  TRACK 01 AUDIO\n    TITLE \"a\"\n"
                        "    INDEX 01 00:00:00\n  TRACK 02 AUDIO\n    TITLE \"b\"\n"
                        "    ISRC DEABC2000002\n    INDEX 00 00:04:05\n"
                        "FILE \"song2.wav\" WAVE\n    INDEX 01 00:00:00\n"
                        "FILE \"song3.wav\" WAVE\n  TRACK 03 AUDIO\n    TITLE \"c\"\n"
                        "    PREGAP 00:01:20\n    INDEX 01 00:00:00\n");
  }
  void burnAlbum() {
    ASSERT_EQ(render(std::string(GetParam().inputs) +
                     " -o album.cue --burn --drive 0 --cd-text --performer 'The Lanterns' "
                     "--title Night --portable-cue --catalog 4006381333931 " +
                     GetParam().options),
              0)
        << m_said;
    ASSERT_EQ(disc(0).state, DiscStatus::kComplete);
  }
  /// Burns on drive 1 with a packaged program.
  int burnBy(const std::string& command) {
    return shell("exec '" VELMOR_BINARY_DIR "/velmor-emulated-drive' run drives -- " + command);
  }
  void expectEqualDiscs() {
    const EmulatedDisc ours = disc(0);
    const EmulatedDisc theirs = disc(1);
    ASSERT_EQ(theirs.state, DiscStatus::kComplete);
    EXPECT_EQ(ours.lead_out, theirs.lead_out);
    EXPECT_EQ(ours.mcn, theirs.mcn);
    ASSERT_EQ(ours.tracks.size(), theirs.tracks.size());
    for (size_t i = 0; i < ours.tracks.size(); ++i) {
      EXPECT_EQ(ours.tracks[i].start(), theirs.tracks[i].start()) << "track " << i + 1;
      EXPECT_EQ(ours.tracks[i].isrc, theirs.tracks[i].isrc) << "track " << i + 1;
    }
    for (int32_t lba = -150; lba < ours.lead_out + 150; ++lba)
      ASSERT_EQ(qFrameOf(ours, lba), qFrameOf(theirs, lba)) << "sector " << lba;
    EXPECT_TRUE(burned(0) == burned(1));
    EXPECT_TRUE(burned(0) == image());
  }
};

TEST_P(Pauses, AreThoseOfADiscThatCdrdaoBurns) {
  burnAlbum();
  ASSERT_EQ(burnBy("cdrdao write --device /dev/sr31 --driver generic-mmc:0x10 --swap -n "
                   "album.portable.cue"),
            0)
      << m_printed << m_said;
  expectEqualDiscs();
}

/// It sleeps for three seconds at every start, so it burns fewer of the discs.
class PausesBesideCdrskin : public Pauses {};

TEST_P(PausesBesideCdrskin, AreThoseOfItsDisc) {
  burnAlbum();
  ASSERT_EQ(burnBy("cdrskin dev=/dev/sr31 -sao cuefile=album.portable.cue"), 0)
      << m_printed << m_said;
  expectEqualDiscs();
}

/// The TOC says the byte order itself.
class PausesBesideToc : public Pauses {};

TEST_P(PausesBesideToc, AreThoseOfTheDiscThatCdrdaoBurnsFromIt) {
  burnAlbum();
  ASSERT_EQ(shell("exec '" VELMOR_BINARY_DIR "/velmor-cdcheck' album.portable.cue --toc album.toc"),
            0)
      << m_printed << m_said;
  ASSERT_EQ(burnBy("cdrdao write --device /dev/sr31 --driver generic-mmc:0x10 -n album.toc"), 0)
      << m_printed << m_said;
  expectEqualDiscs();
}

TEST_P(Pauses, StandWhereTheLeadInsAre) {
  burnAlbum();
  for (const RecordedTrack& track : disc(0).tracks) {
    const bool first = track.number == 1;
    EXPECT_EQ(track.pregap_start < track.start(), first || GetParam().pauses)
        << "track " << track.number;
  }
}

constexpr LeadIns kNone{"None", "", false};
constexpr LeadIns kOfTracks{"OfTracks", "--track-leadin 2000", true};
constexpr LeadIns kOfTheDisc{"OfTheDisc", "--disc-leadin 2000", false};
constexpr LeadIns kOfBothAndOdd{"OfBothAndOdd", "--disc-leadin 2013 --track-leadin 1507", true};

std::string nameOf(const testing::TestParamInfo<LeadIns>& test) {
  return test.param.name;
}

constexpr LeadIns kOfASheet{"OfASheet", "", true, kSheet};

INSTANTIATE_TEST_SUITE_P(Each, Pauses,
                         testing::Values(kNone, kOfTracks, kOfTheDisc, kOfBothAndOdd, kOfASheet),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(Some, PausesBesideToc, testing::Values(kOfBothAndOdd), nameOf);
INSTANTIATE_TEST_SUITE_P(Some, PausesBesideCdrskin, testing::Values(kNone, kOfBothAndOdd), nameOf);

}  // namespace
}  // namespace burn_test
