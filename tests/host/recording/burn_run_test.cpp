#include "host/recording/burn/burn_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/host/recording/attendant_double.h"
#include "tests/host/recording/recorder_double.h"

namespace velmor::recording::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Burn : public ::testing::Test {
 protected:
  Burn() {
    options.attendant = &person;
    options.cancel = &cancel;
  }
  Outcome run(const Programme& programme) {
    RecorderDouble recorder(drive);
    return BurnRun(recorder, "Acme Burner (/dev/sr0)", properties, options)
        .run(programme.tracks.data(), programme.count());
  }
  /// A refusal: the drive was asked to write nothing.
  void expectRefused(const Outcome& outcome, const char* words) {
    EXPECT_THAT(outcome.failure, HasSubstr(words));
    EXPECT_FALSE(outcome.begun);
    EXPECT_FALSE(outcome.written);
    EXPECT_EQ(drive.writings, 0);
    EXPECT_EQ(drive.blankings, 0);
    EXPECT_THAT(person.failures, ElementsAre(outcome.failure + " Nothing was written."));
  }
  void putRewritable() { drive.medium = {DiscState::closed, "CD-RW", true, true, 0, 359'849}; }

  DriveState drive;
  AttendantDouble person;
  std::atomic<bool> cancel{false};
  Options options;
  DiscBurnProperties properties{false, false, true, false, kDiscActionMount, kDiscActionNone};
};

TEST_F(Burn, ThatGoesWellMakesADiscOfTheImagesBytes) {
  const Programme programme({300, 450, 300});
  const Outcome outcome = run(programme);
  EXPECT_EQ(outcome.failure, "");
  EXPECT_TRUE(outcome.written);
  EXPECT_FALSE(outcome.tested);
  EXPECT_EQ(outcome.disc_state, "The CD-R is written and closed.");
  EXPECT_EQ(drive.disc, programme.image());
  EXPECT_FALSE(drive.kept_open);
  EXPECT_THAT(person.failures, IsEmpty());
}

TEST_F(Burn, TellsHowFarItIs) {
  run(Programme({300, 450}));
  ASSERT_FALSE(person.steps.empty());
  int64_t before = 0;
  for (const Progress& step : person.steps) {
    EXPECT_GE(step.sectors_done, before);
    EXPECT_EQ(step.sectors_total, 750);
    EXPECT_EQ(step.tracks, 2);
    before = step.sectors_done;
  }
  EXPECT_EQ(person.steps.front().track, 1);
  EXPECT_EQ(person.steps.back().track, 2);
  EXPECT_EQ(person.steps.back().phase, Phase::writing);
  EXPECT_EQ(person.steps.back().buffer_percent, 80);
}

TEST_F(Burn, ThatItsAttendantLeavesIsStoppedBeforeItsAudioGoes) {
  drive.stopping_steps = 3;
  person.on_progress = [](const Progress& progress) {
    if (progress.phase == Phase::writing) throw std::runtime_error("the terminal is gone");
  };
  const Programme programme({300, 300});
  EXPECT_THROW(run(programme), std::runtime_error);
  EXPECT_EQ(drive.cancels, 1);
  EXPECT_EQ(drive.stopping_steps, 0) << "the drive was still writing";
  EXPECT_EQ(programme.producers[0]->cleaned, 1);
}

TEST_F(Burn, PreparesEachProducerOnceAndTellsItOfTheEnd) {
  const Programme programme({300, 300});
  run(programme);
  for (const auto& producer : programme.producers) {
    EXPECT_EQ(producer->prepared, 1);
    EXPECT_EQ(producer->cleaned, 1);
  }
}

TEST_F(Burn, AProducerThatIsNotReadyStopsItBeforeItBegins) {
  const Programme programme({300, 300});
  programme.producers[1]->ready = false;
  expectRefused(run(programme), "audio of track 2");
  EXPECT_EQ(programme.producers[0]->cleaned, 1);
  EXPECT_EQ(programme.producers[1]->cleaned, 0);
}

TEST_F(Burn, ATestBurnIsATestWrite) {
  properties.testing = true;
  const Outcome outcome = run(Programme({300}));
  EXPECT_TRUE(outcome.tested);
  EXPECT_FALSE(outcome.written);
  EXPECT_TRUE(drive.simulated);
  EXPECT_TRUE(drive.disc.empty());
}

TEST_F(Burn, ADryRunIsATestWriteWhateverTheBurnAsksFor) {
  options.dry_run = true;
  options.verify = true;
  const Outcome outcome = run(Programme({300}));
  EXPECT_TRUE(drive.simulated);
  EXPECT_TRUE(outcome.tested);
  EXPECT_FALSE(outcome.compared);
  EXPECT_THAT(outcome.disc_state, HasSubstr("it was a test"));
}

TEST_F(Burn, ADriveThatCannotTestIsNotLetToWriteInEarnest) {
  options.dry_run = true;
  drive.can_test_write = false;
  expectRefused(run(Programme({300})), "cannot make a test write");
}

TEST_F(Burn, AnAppendableOneLeavesTheDiscOpen) {
  properties.appendable = true;
  const Outcome outcome = run(Programme({300}));
  EXPECT_TRUE(drive.kept_open);
  EXPECT_THAT(outcome.disc_state, HasSubstr("open for another session"));
}

TEST_F(Burn, ALayoutThatIsNoAudioDiscIsRefusedBeforeTheDriveIsAsked) {
  expectRefused(run(Programme({300, 299})), "track 2 is shorter than 4 seconds");
}

TEST_F(Burn, AnEmptyTrayIsRefused) {
  drive.medium = {DiscState::none, "", false, false, 0, 0};
  expectRefused(run(Programme({300})), "There is no disc in the drive");
}

TEST_F(Burn, AClosedDiscIsRefused) {
  drive.medium = {DiscState::closed, "CD-R", true, false, 0, 0};
  expectRefused(run(Programme({300})), "written and closed");
}

TEST_F(Burn, ATooSmallDiscIsRefused) {
  drive.medium.free_sectors = 749;
  expectRefused(run(Programme({300, 450})), "has room for 00:09:74");
}

TEST_F(Burn, ARewritableDiscIsBlankedAfterAYes) {
  putRewritable();
  person.blank = true;
  const Programme programme({300});
  const Outcome outcome = run(programme);
  EXPECT_TRUE(outcome.written);
  EXPECT_EQ(drive.blankings, 1);
  EXPECT_EQ(drive.disc, programme.image());
  ASSERT_EQ(person.questions.size(), 1U);
  EXPECT_THAT(person.questions[0],
              HasSubstr("Acme Burner (/dev/sr0) holds a CD-RW that is written and closed"));
  EXPECT_EQ(person.steps.front().phase, Phase::blanking);
}

TEST_F(Burn, ANoLeavesTheRewritableDiscAlone) {
  putRewritable();
  expectRefused(run(Programme({300})), "It was not to be erased");
  EXPECT_EQ(person.questions.size(), 1U);
}

TEST_F(Burn, NobodyToAskIsANo) {
  putRewritable();
  options.attendant = nullptr;
  EXPECT_THAT(run(Programme({300})).failure, HasSubstr("not to be erased"));
  EXPECT_EQ(drive.blankings, 0);
}

TEST_F(Burn, ADryRunBlanksNothingAndDoesNotAsk) {
  putRewritable();
  person.blank = true;
  options.dry_run = true;
  expectRefused(run(Programme({300})), "does not blank one");
  EXPECT_THAT(person.questions, IsEmpty());
}

TEST_F(Burn, WithoutOverwritingARewritableDiscIsRefused) {
  putRewritable();
  person.blank = true;
  properties.overwrite = false;
  expectRefused(run(Programme({300})), "may not overwrite");
}

TEST_F(Burn, ARewritableDiscThatIsTooSmallIsNotBlankedInVain) {
  putRewritable();
  drive.medium.capacity_sectors = 299;
  person.blank = true;
  expectRefused(run(Programme({300})), "room for");
}

TEST_F(Burn, AFailedBlankingEndsIt) {
  putRewritable();
  person.blank = true;
  drive.blanks_well = false;
  const Outcome outcome = run(Programme({300}));
  EXPECT_EQ(outcome.failure, "The disc could not be blanked.") << "the drive did not say why";
  EXPECT_THAT(outcome.disc_state, HasSubstr("may be lost"));
  EXPECT_EQ(drive.writings, 0);
}

/// The trap: the recorder goes on with zeros and reports a good disc.
TEST_F(Burn, AFailedReadOfTheImageIsAFailureThoughTheRecorderReportsSuccess) {
  drive.goes_on_with_zeros = true;
  const Programme programme({300, 300});
  programme.producers[1]->fails_at_sector = 5;
  const Outcome outcome = run(programme);
  EXPECT_FALSE(outcome.written);
  EXPECT_THAT(outcome.failure, HasSubstr("could not be read at 00:04:05 (track 2)"));
}

TEST_F(Burn, AFailureThatNobodyExplainsIsToldAsOne) {
  drive.fails_silently_at = 350;
  EXPECT_EQ(run(Programme({300, 300})).failure, "The burn failed.");
}

TEST_F(Burn, AFlawOfTheDiscIsToldWithItsPlace) {
  drive.flaw_at = 350;
  const Outcome outcome = run(Programme({300, 300}));
  EXPECT_TRUE(outcome.begun);
  EXPECT_FALSE(outcome.written);
  EXPECT_EQ(outcome.failure,
            "The burn failed. The drive stopped at 00:04:50 (track 2): the disc has a flaw there: "
            "it could not be written (sense 3 0C 00).");
  EXPECT_THAT(outcome.disc_state, HasSubstr("cannot be used any more"));
  EXPECT_THAT(person.failures, ElementsAre(outcome.failure + " " + outcome.disc_state));
}

TEST_F(Burn, TheWishToStopStopsItAndTellsOfTheDisc) {
  person.on_progress = [this](const Progress& step) {
    if (step.sectors_done >= 200) cancel = true;
  };
  const Outcome outcome = run(Programme({300, 450}));
  EXPECT_TRUE(outcome.cancelled);
  EXPECT_FALSE(outcome.written);
  EXPECT_EQ(outcome.failure, "The burn was stopped.");
  EXPECT_THAT(outcome.disc_state, HasSubstr("written in part"));
  EXPECT_LT(drive.disc.size(), size_t{310} * kSectorBytes);
}

TEST_F(Burn, TheWishToStopBeforeItBeginsWritesNothing) {
  cancel = true;
  const Outcome outcome = run(Programme({300}));
  EXPECT_TRUE(outcome.cancelled);
  expectRefused(outcome, "stopped before it began");
}

TEST_F(Burn, AnErrorThatDidNotEndItIsToldAsAWarning) {
  drive.remark = "SCSI error on close session: [4 08 00] Hardware error.";
  EXPECT_TRUE(run(Programme({300})).written);
  ASSERT_EQ(person.warnings.size(), 1U);
  EXPECT_THAT(person.warnings[0], HasSubstr("the connection to the drive broke down"));
}

TEST_F(Burn, TheWishToStopThatComesWhenAllIsWrittenLetsTheDiscBeCompleted) {
  const Programme programme({300});
  person.on_progress = [this](const Progress& step) {
    if (step.sectors_done == step.sectors_total) cancel = true;
  };
  drive.closing_steps = 2;
  const Outcome outcome = run(programme);
  EXPECT_TRUE(outcome.written);
  EXPECT_FALSE(outcome.cancelled);
  EXPECT_EQ(drive.cancels, 0);
  EXPECT_EQ(person.notes.size(), 1U);
}

TEST_F(Burn, ADriveThatIsFasterThanWishedIsWarnedOf) {
  options.speed = 1.0;
  run(Programme({300}));
  EXPECT_EQ(drive.speed, 1.0);
  ASSERT_EQ(person.warnings.size(), 1U);
  EXPECT_THAT(person.warnings[0], HasSubstr("about 4x"));
}

TEST_F(Burn, TextsComeFromTheCueSheet) {
  const auto path = std::filesystem::temp_directory_path() /
                    ("velmor_texts_" + std::to_string(getpid()) + ".cue");
  std::ofstream(path)
      << "TITLE \"Night Drive\"\r\n  TRACK 01 AUDIO\r\n    ISRC \"USABC0500001\"\r\n";
  options.text_sheet = path;
  const Outcome outcome = run(Programme({300}));
  std::filesystem::remove(path);
  EXPECT_TRUE(outcome.written);
  EXPECT_TRUE(drive.had_texts);
  EXPECT_EQ(drive.texts.block(TextKind::title).disc, "Night Drive");
  EXPECT_THAT(drive.texts.recording_codes, ElementsAre("USABC0500001"));
}

TEST_F(Burn, AMissingCueSheetIsToldBeforeAnythingIsWritten) {
  options.text_sheet = "/nowhere/album.cue";
  expectRefused(run(Programme({300})), "/nowhere/album.cue cannot be read");
}

TEST_F(Burn, AComparisonFollowsWhereItIsWanted) {
  for (const bool by_person : {true, false}) {
    options.verify = by_person;
    properties.verify = !by_person;
    drive = {};
    const Outcome outcome = run(Programme({300, 300}));
    EXPECT_TRUE(outcome.written);
    EXPECT_TRUE(outcome.compared);
    EXPECT_EQ(person.steps.back().phase, Phase::comparing);
  }
}

TEST_F(Burn, ADiscThatCannotBeReadBackIsWrittenButNotCompared) {
  options.verify = true;
  drive.unreadable_from = 0;
  const Outcome outcome = run(Programme({300}));
  EXPECT_TRUE(outcome.written);
  EXPECT_FALSE(outcome.compared);
  ASSERT_EQ(person.warnings.size(), 1U);
  EXPECT_THAT(person.warnings[0], HasSubstr("not compared"));
}

}  // namespace
}  // namespace velmor::recording::testing
