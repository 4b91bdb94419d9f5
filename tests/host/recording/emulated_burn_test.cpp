// From the burn engine's calls through libburn to the disc in an emulated drive.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <stdexcept>

#include "disc/units/disc_units.h"
#include "host/recording/interface/recording_service.h"
#include "tests/host/recording/emulated_drive_folder.h"
#include "tests/host/recording/scripted_user_interface.h"

extern "C" velmor::recording::Service* velmorOpenRecording(
    const velmor::recording::RecordingOptions& options, std::string& why);

namespace velmor::recording::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class EmulatedBurn : public ::testing::Test {
 protected:
  EmulatedBurn() {
    m_options.user_interface = &m_person;
    m_options.cancel = &m_cancel;
    std::string why;
    m_service = velmorOpenRecording(m_options, why);
    if (m_service == nullptr) throw std::runtime_error(why);
  }
  ~EmulatedBurn() override { m_service->close(); }

  /// What the burn engine does, in its order.
  const Outcome& burn(const Programme& programme, int drive = 0) {
    m_service->configure(m_options);
    m_service->refresh();
    if (drive >= m_service->DeviceCount()) return m_service->outcome();
    void* device = m_service->DeviceAt(drive);
    EXPECT_TRUE(m_service->IsValid(device));
    if (!m_service->AcquireExclusiveAccess(device)) return m_service->outcome();
    void* handle = m_service->BurnForDevice(device);
    m_service->SetProperties(handle, &m_properties);
    m_service->RunProgressPanel(handle, programme.tracks.data(), programme.count());
    m_service->ReleaseExclusiveAccess(device);
    return m_service->outcome();
  }
  void writeSheet(const std::string& text) {
    m_options.text_sheet = m_drives.folder(0) / "album.cue";
    std::ofstream(m_options.text_sheet) << text;
  }
  /// Nothing was written, and the user has been told why.
  void expectUntouched(const Outcome& outcome, const std::string& words) {
    EXPECT_THAT(outcome.failure, HasSubstr(words));
    EXPECT_FALSE(outcome.written);
    EXPECT_EQ(outcome.disc_state, "nothing was written");
    ASSERT_EQ(m_person.failures.size(), 1U);
    EXPECT_THAT(m_person.failures[0], HasSubstr(words));
    EXPECT_THAT(m_drives.audio(0), IsEmpty());
  }

  EmulatedDriveFolder m_drives;
  ScriptedUserInterface m_person;
  std::atomic<bool> m_cancel{false};
  RecordingOptions m_options;
  DiscBurnProperties m_properties{false, false, true, false, kDiscActionMount, kDiscActionNone};
  Service* m_service = nullptr;
};

TEST_F(EmulatedBurn, TheMachinesRecordersAreListedWithTheirNames) {
  const std::vector<ListedDrive> drives = m_service->drives();
  ASSERT_EQ(drives.size(), 2U);
  EXPECT_EQ(drives[0].address, "/dev/sr30");
  EXPECT_EQ(drives[0].vendor, "ACME");
  EXPECT_EQ(drives[0].product, "BURNER ONE");
  EXPECT_EQ(drives[1].product, "BURNER TWO");
  EXPECT_TRUE(drives[0].usable);
  EXPECT_EQ(m_service->describeDisc(drives[0]), "a blank CD-R, 79:57:70 free");
}

TEST_F(EmulatedBurn, TheDiscHasTheImagesBytesAndItsTracksStartWhereTheyShould) {
  const Programme programme({300, 1234, 567});
  const Outcome& outcome = burn(programme);
  EXPECT_EQ(outcome.failure, "");
  EXPECT_TRUE(outcome.written);
  EXPECT_EQ(m_drives.audio(0), programme.image());
  const emulated_drive::EmulatedDisc disc = m_drives.disc(0);
  EXPECT_EQ(disc.state, emulated_drive::DiscStatus::kComplete);
  ASSERT_EQ(disc.tracks.size(), 3U);
  EXPECT_EQ(disc.tracks[0].start(), 0);
  EXPECT_EQ(disc.tracks[1].start(), 300);
  EXPECT_EQ(disc.tracks[2].start(), 1534);
  EXPECT_EQ(disc.tracks[1].pregap_start, 300);
  EXPECT_EQ(disc.lead_out, 2101);
  EXPECT_THAT(m_person.failures, IsEmpty());
  EXPECT_THAT(m_person.warnings, IsEmpty());
}

TEST_F(EmulatedBurn, TheSecondDriveIsTheSecondOne) {
  const Programme programme({300});
  EXPECT_TRUE(burn(programme, 1).written);
  EXPECT_EQ(m_drives.audio(1), programme.image());
  EXPECT_EQ(m_drives.disc(0).state, emulated_drive::DiscStatus::kBlank);
}

TEST_F(EmulatedBurn, NinetyNineTracksFit) {
  const Programme programme(std::vector<int>(99, 300));
  EXPECT_TRUE(burn(programme).written);
  EXPECT_EQ(m_drives.disc(0).tracks.size(), 99U);
  EXPECT_EQ(m_drives.audio(0), programme.image());
}

TEST_F(EmulatedBurn, AnUnfilledEndIsSilence) {
  Bytes image = noise(700);
  image.resize(image.size() - 2351);
  EXPECT_TRUE(burn(Programme(image, {400, 300})).written);
  image.resize(image.size() + 2351, 0);
  EXPECT_EQ(m_drives.audio(0), image);
}

TEST_F(EmulatedBurn, PregapsLieBeforeTheirTracksWithTheProducersAudio) {
  Programme programme({300, 300, 300});
  programme.tracks[0].pregap_length = 150;
  programme.tracks[1].pregap_length = 75;
  programme.producers[1]->pregap_byte = 3;
  EXPECT_TRUE(burn(programme).written);
  const emulated_drive::EmulatedDisc disc = m_drives.disc(0);
  EXPECT_EQ(disc.tracks[0].start(), 0);
  EXPECT_EQ(disc.tracks[1].pregap_start, 300);
  EXPECT_EQ(disc.tracks[1].start(), 375);
  EXPECT_EQ(disc.tracks[2].start(), 675);
  Bytes expected = programme.image();
  expected.insert(expected.begin() + 300 * disc::kBytesPerSector, 75 * disc::kBytesPerSector, 3);
  EXPECT_EQ(m_drives.audio(0), expected);
}

TEST_F(EmulatedBurn, ALongPregapOfTrack1IsWhollyOnTheDisc) {
  Programme programme({300});
  programme.tracks[0].pregap_length = 225;
  programme.producers[0]->pregap_byte = 3;
  EXPECT_TRUE(burn(programme).written);
  EXPECT_EQ(m_drives.disc(0).tracks[0].start(), 75);
  Bytes expected = programme.image();
  expected.insert(expected.begin(), 75 * disc::kBytesPerSector, 3);
  EXPECT_EQ(m_drives.audio(0), expected);
}

TEST_F(EmulatedBurn, TheAlbumsLayoutPutsThePausesBeforeTheirTracks) {
  m_options.layout = {{0, 150}, {1000, 1075}, {std::nullopt, 1500}};
  m_options.verify = true;
  const Programme programme({1075, 425, 500});
  const Outcome& outcome = burn(programme);
  EXPECT_EQ(outcome.failure, "");
  EXPECT_TRUE(outcome.compared);
  EXPECT_EQ(m_drives.audio(0), programme.image());
  const emulated_drive::EmulatedDisc disc = m_drives.disc(0);
  ASSERT_EQ(disc.tracks.size(), 3U);
  EXPECT_EQ(disc.tracks[0].pregap_start, -disc::kSectorsBeforeTrack1);
  EXPECT_EQ(disc.tracks[0].start(), 150);
  EXPECT_EQ(disc.tracks[1].pregap_start, 1000);
  EXPECT_EQ(disc.tracks[1].start(), 1075);
  EXPECT_EQ(disc.tracks[2].pregap_start, 1500);
  EXPECT_EQ(disc.tracks[2].start(), 1500);
  EXPECT_EQ(disc.lead_out, 2000);
}

TEST_F(EmulatedBurn, ALayoutOfAnotherAlbumIsRefusedBeforeAnythingIsWritten) {
  m_options.layout = {{std::nullopt, 0}};
  expectUntouched(burn(Programme({300, 300})), "the sheet has 1 track, and the burn was given 2");
}

TEST_F(EmulatedBurn, ATestWriteStoresNothing) {
  m_options.dry_run = true;
  const Outcome& outcome = burn(Programme({300, 300}));
  EXPECT_EQ(outcome.failure, "");
  EXPECT_TRUE(outcome.tested);
  EXPECT_FALSE(outcome.written);
  EXPECT_EQ(m_drives.disc(0).state, emulated_drive::DiscStatus::kBlank);
  EXPECT_THAT(m_drives.audio(0), IsEmpty());
}

TEST_F(EmulatedBurn, CatalogNumberIsrcAndTextsStandOnTheDisc) {
  writeSheet(
      "TITLE \"Night Drive\"\r\nPERFORMER \"The Lanterns\"\r\nCATALOG \"4006381333931\"\r\n"
      "FILE \"x.bin\" BINARY\r\n"
      "  TRACK 01 AUDIO\r\n    TITLE \"Café\"\r\n    ISRC \"USABC0500001\"\r\n"
      "  TRACK 02 AUDIO\r\n    TITLE \"Coda\"\r\n    ISRC \"USABC0500002\"\r\n");
  EXPECT_TRUE(burn(Programme({300, 300})).written);
  const emulated_drive::EmulatedDisc disc = m_drives.disc(0);
  EXPECT_EQ(disc.mcn, "4006381333931");
  EXPECT_EQ(disc.tracks[0].isrc, "USABC0500001");
  EXPECT_EQ(disc.tracks[1].isrc, "USABC0500002");
  // The titles, one after the other with zeros between them, in packs of type 80h.
  std::string titles;
  for (const auto& pack : disc.cd_text)
    if (pack[0] == 0x80) titles.append(pack.begin() + 4, pack.begin() + 16);
  EXPECT_EQ(titles.substr(0, 22), std::string("Night Drive\0Caf\xE9\0Coda\0", 22));
}

TEST_F(EmulatedBurn, WithoutASheetThereAreNoTexts) {
  EXPECT_TRUE(burn(Programme({300})).written);
  EXPECT_THAT(m_drives.disc(0).cd_text, IsEmpty());
  EXPECT_EQ(m_drives.disc(0).mcn, "");
}

TEST_F(EmulatedBurn, AFullBlockOfTextsIsTaken) {
  writeSheet("  TRACK 01 AUDIO\r\n    TITLE \"" + std::string(252 * 12 - 2, 'x') + "\"\r\n");
  EXPECT_TRUE(burn(Programme({300})).written) << m_service->outcome().failure;
  EXPECT_EQ(m_drives.disc(0).cd_text.size(), 255U);
}

TEST_F(EmulatedBurn, TheDiscIsReadBackAndCompared) {
  m_options.verify = true;
  const Outcome& outcome = burn(Programme({300, 450}));
  EXPECT_TRUE(outcome.written) << outcome.failure;
  EXPECT_TRUE(outcome.compared);
}

TEST_F(EmulatedBurn, ASectorThatCannotBeReadBackIsNoGoodDisc) {
  m_options.verify = true;
  m_drives.change(0, [](emulated_drive::DriveSettings& s) { s.faults.read_error_at = 500; });
  const Outcome& outcome = burn(Programme({300, 450}));
  EXPECT_FALSE(outcome.written);
  EXPECT_THAT(outcome.failure, HasSubstr("cannot be read at 00:06:"));
}

TEST_F(EmulatedBurn, ADriveThatIsFasterThanWishedIsWarnedOf) {
  m_options.speed = 1.0;
  EXPECT_TRUE(burn(Programme({300})).written);
  ASSERT_EQ(m_person.warnings.size(), 1U);
  EXPECT_THAT(m_person.warnings[0], HasSubstr("slowest speed"));
}

TEST_F(EmulatedBurn, ASpeedThatTheDriveHasIsTakenWithoutAWord) {
  m_options.speed = 16.0;
  EXPECT_TRUE(burn(Programme({300})).written);
  EXPECT_THAT(m_person.warnings, IsEmpty());
}

TEST_F(EmulatedBurn, ListingPullsNoTrayIn) {
  m_drives.drive(0).saveTray(true);
  EXPECT_EQ(m_service->describeDisc(m_service->drives()[0]), "no disc");
  EXPECT_TRUE(m_drives.drive(0).trayOpen());
}

TEST_F(EmulatedBurn, ABurnPullsTheTrayIn) {
  m_drives.drive(0).saveTray(true);
  EXPECT_TRUE(burn(Programme({300})).written) << m_service->outcome().failure;
}

TEST_F(EmulatedBurn, EjectsWhenItIsAskedTo) {
  m_properties.completion_action = kDiscActionEject;
  EXPECT_TRUE(burn(Programme({300})).written);
  EXPECT_TRUE(m_drives.drive(0).trayOpen());
}

TEST_F(EmulatedBurn, LeavesTheDiscInTheDriveOtherwise) {
  EXPECT_TRUE(burn(Programme({300})).written);
  EXPECT_FALSE(m_drives.drive(0).trayOpen());
}

TEST_F(EmulatedBurn, AMediumErrorIsToldWithItsPlaceAndSpoilsTheDisc) {
  m_drives.change(0, [](emulated_drive::DriveSettings& s) { s.faults.write_error_at = 400; });
  const Outcome& outcome = burn(Programme({300, 450}));
  EXPECT_FALSE(outcome.written);
  EXPECT_THAT(outcome.failure, HasSubstr("the drive stopped at 00:05:"));
  EXPECT_THAT(outcome.failure, HasSubstr("(track 2)"));
  EXPECT_THAT(outcome.failure, HasSubstr("the disc has a flaw there"));
  EXPECT_THAT(outcome.disc_state, HasSubstr("cannot be used any more"));
  EXPECT_EQ(m_person.failures.size(), 1U);
}

TEST_F(EmulatedBurn, AnEmptyTrayIsToldOf) {
  m_drives.empty(0);
  const Outcome& outcome = burn(Programme({300}));
  expectUntouched(outcome, "there is no disc in the drive");
}

TEST_F(EmulatedBurn, AClosedDiscIsRefused) {
  m_drives.insert(0, EmulatedDriveFolder::closed());
  expectUntouched(burn(Programme({300})), "written and closed");
}

TEST_F(EmulatedBurn, ATooSmallDiscIsRefusedAndTheLastSectorIsUsed) {
  emulated_drive::EmulatedDisc small;
  small.capacity = 750;
  m_drives.insert(0, small);
  expectUntouched(burn(Programme({300, 451})), "room for 00:10:00: 00:00:01 too much");
  EXPECT_EQ(m_drives.disc(0).state, emulated_drive::DiscStatus::kBlank);
  const Programme fits({300, 450});
  EXPECT_TRUE(burn(fits).written) << m_service->outcome().failure;
  EXPECT_EQ(m_drives.audio(0), fits.image());
}

TEST_F(EmulatedBurn, ADriveThatIsTakenBeforeTheBurnIsToldOf) {
  m_service->refresh();
  ASSERT_EQ(m_service->DeviceCount(), 2);
  void* device = m_service->DeviceAt(0);
  m_drives.change(0, [](emulated_drive::DriveSettings& s) { s.busy = true; });
  EXPECT_FALSE(m_service->AcquireExclusiveAccess(device));
  expectUntouched(m_service->outcome(), "\"/dev/sr30\" is in use by another program");
}

TEST_F(EmulatedBurn, DrivesThatMayNotBeOpenedKeepTheirPlaceInTheListAndSayWhy) {
  m_drives.change(0, [](emulated_drive::DriveSettings& s) { s.deny = true; });
  std::vector<ListedDrive> drives = m_service->drives();
  ASSERT_EQ(drives.size(), 2U);
  EXPECT_EQ(drives[0].address, "/dev/sr30");
  EXPECT_FALSE(drives[0].usable);
  EXPECT_THAT(drives[0].obstacle, HasSubstr("group"));
  EXPECT_EQ(m_service->deviceOf(drives[0]), nullptr);
  EXPECT_EQ(drives[1].address, "/dev/sr31");
  EXPECT_TRUE(drives[1].usable);
  EXPECT_EQ(m_service->deviceOf(drives[1]), m_service->DeviceAt(0));
  m_service->refresh();
  EXPECT_EQ(m_service->DeviceCount(), 1);
  m_drives.change(0, [](emulated_drive::DriveSettings& s) { s.deny = false, s.busy = true; });
  drives = m_service->drives();
  EXPECT_THAT(drives[0].obstacle, HasSubstr("in use by another program"));
}

TEST_F(EmulatedBurn, ARewritableDiscIsBlankedAfterAYesOnly) {
  m_drives.insert(0, EmulatedDriveFolder::closed(EmulatedDriveFolder::rewritable()));
  const Programme programme({300, 300});
  expectUntouched(burn(programme), "which was not to be erased");
  EXPECT_EQ(m_drives.disc(0).tracks.size(), 1U);
  m_person.blank = true;
  EXPECT_TRUE(burn(programme).written) << m_service->outcome().failure;
  ASSERT_EQ(m_person.questions.size(), 2U);
  EXPECT_THAT(m_person.questions[1], HasSubstr("a CD-RW that is written and closed"));
  EXPECT_EQ(m_drives.audio(0), programme.image());
  EXPECT_EQ(m_drives.disc(0).tracks.size(), 2U);
}

TEST_F(EmulatedBurn, AFailedReadOfTheImageStopsTheBurn) {
  const Programme programme({300, 3000});
  programme.producers[1]->fails_at_sector = 100;
  const Outcome& outcome = burn(programme);
  EXPECT_FALSE(outcome.written);
  EXPECT_THAT(outcome.failure, HasSubstr("could not be read at 00:05:25 (track 2)"));
  EXPECT_NE(m_drives.disc(0).state, emulated_drive::DiscStatus::kComplete);
  // No silence in place of the audio that is missing, but for what fills the last write command.
  EXPECT_LE(m_drives.audio(0).size(), size_t{413} * disc::kBytesPerSector);
}

TEST_F(EmulatedBurn, AnImageThatBecomesShorterStopsTheBurn) {
  const Programme programme(noise(500), {300, 300});
  const Outcome& outcome = burn(programme);
  EXPECT_FALSE(outcome.written);
  EXPECT_THAT(outcome.failure, HasSubstr("ends too early at 00:06:50 (track 2)"));
}

TEST_F(EmulatedBurn, TheWishToStopIsObeyedAndTheDiscsStateTold) {
  m_drives.change(0, [](emulated_drive::DriveSettings& s) {
    s.faults.write_delay = std::chrono::milliseconds(5);
  });
  m_person.on_progress = [this](const BurnProgress& step) {
    if (step.phase == Phase::kWriting && step.sectors_done > 100) m_cancel = true;
  };
  const Outcome& outcome = burn(Programme({300, 6000}));
  EXPECT_TRUE(outcome.cancelled);
  EXPECT_FALSE(outcome.written);
  EXPECT_EQ(outcome.failure, "the burn was stopped");
  EXPECT_THAT(outcome.disc_state, HasSubstr("cannot be used any more"));
  EXPECT_LT(m_drives.audio(0).size(), size_t{6000} * disc::kBytesPerSector);
}

TEST_F(EmulatedBurn, AStoppedRewritableDiscCanBeUsedAgain) {
  m_drives.insert(0, EmulatedDriveFolder::rewritable());
  m_person.on_progress = [this](const BurnProgress& step) {
    if (step.phase == Phase::kWriting && step.sectors_done > 0) m_cancel = true;
  };
  m_drives.change(0, [](emulated_drive::DriveSettings& s) {
    s.faults.write_delay = std::chrono::milliseconds(5);
  });
  EXPECT_THAT(burn(Programme({6000})).disc_state, HasSubstr("blanked and used again"));
  m_drives.change(0, [](emulated_drive::DriveSettings& s) { s.faults.write_delay = {}; });
  m_cancel = false;
  m_person.on_progress = nullptr;
  m_person.blank = true;
  const Programme again({300});
  EXPECT_TRUE(burn(again).written) << m_service->outcome().failure;
  EXPECT_EQ(m_drives.audio(0), again.image());
}

TEST_F(EmulatedBurn, ADriveThatBecomesReadyLateIsWaitedFor) {
  m_drives.change(0, [](emulated_drive::DriveSettings& s) { s.faults.becoming_ready_polls = 2; });
  EXPECT_TRUE(burn(Programme({300})).written) << m_service->outcome().failure;
}

TEST_F(EmulatedBurn, ProgressGoesThroughThePhasesToTheEnd) {
  m_drives.change(0, [](emulated_drive::DriveSettings& s) {
    s.faults.write_delay = std::chrono::milliseconds(2);
  });
  EXPECT_TRUE(burn(Programme({300, 2000})).written);
  ASSERT_FALSE(m_person.steps.empty());
  int64_t done = 0;
  bool wrote = false;
  for (const BurnProgress& step : m_person.steps) {
    EXPECT_GE(step.sectors_done, done);
    done = step.sectors_done;
    wrote = wrote || (step.phase == Phase::kWriting && step.track == 2 && step.speed > 0.0);
  }
  EXPECT_TRUE(wrote);
}

TEST_F(EmulatedBurn, OneServiceBurnsManyDiscs) {
  const Programme programme({300});
  for (int i = 0; i < 5; ++i) {
    m_drives.insert(0, {});
    for (const auto& producer : programme.producers) producer->PrepareTrackForVerification();
    ASSERT_TRUE(burn(programme).written) << m_service->outcome().failure;
    ASSERT_EQ(m_drives.audio(0), programme.image());
  }
}

}  // namespace
}  // namespace velmor::recording::testing
