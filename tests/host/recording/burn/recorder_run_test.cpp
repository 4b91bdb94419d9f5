#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "disc/cd_text/disc_texts.h"
#include "disc/units/disc_units.h"
#include "host/recording/burn/burn_run.h"
#include "tests/host/recording/scripted_recorder.h"
#include "tests/host/recording/scripted_user_interface.h"

namespace velmor::recording::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Burn : public ::testing::Test {
 protected:
  Burn() {
    m_options.user_interface = &m_person;
    m_options.cancel = &m_cancel;
  }
  Outcome run(const Programme& programme) {
    ScriptedRecorder recorder(m_drive);
    return BurnRun(recorder, "Acme Burner (/dev/sr0)", m_properties, m_options)
        .run(programme.tracks.data(), programme.count());
  }
  /// A refusal: the drive was asked to write nothing. It is told as a clause that a program's name
  /// can stand before.
  void expectRefused(const Outcome& outcome, const char* words) {
    EXPECT_THAT(outcome.failure, HasSubstr(words));
    EXPECT_FALSE(outcome.begun);
    EXPECT_FALSE(outcome.written);
    EXPECT_EQ(m_drive.writings, 0);
    EXPECT_EQ(m_drive.blankings, 0);
    EXPECT_THAT(m_person.failures, ElementsAre(outcome.failure + "; nothing was written"));
    EXPECT_THAT(outcome.failure, ::testing::MatchesRegex("[a-z\"].*[^.]"));
  }
  void putRewritable() {
    m_drive.medium = {DiscCondition::kClosed, "CD-RW", true, true, 0, 359'849};
  }

  ScriptedDrive m_drive;
  ScriptedUserInterface m_person;
  std::atomic<bool> m_cancel{false};
  RecordingOptions m_options;
  DiscBurnProperties m_properties{false, false, true, false, kDiscActionMount, kDiscActionNone};
};

TEST_F(Burn, ThatGoesWellMakesADiscOfTheImagesBytes) {
  const Programme programme({300, 450, 300});
  const Outcome outcome = run(programme);
  EXPECT_EQ(outcome.failure, "");
  EXPECT_TRUE(outcome.written);
  EXPECT_FALSE(outcome.tested);
  EXPECT_EQ(outcome.disc_state, "the CD-R is written and closed");
  EXPECT_EQ(m_drive.disc, programme.image());
  EXPECT_FALSE(m_drive.kept_open);
  EXPECT_THAT(m_person.failures, IsEmpty());
}

TEST_F(Burn, TellsHowFarItIs) {
  run(Programme({300, 450}));
  ASSERT_FALSE(m_person.steps.empty());
  int64_t before = 0;
  for (const BurnProgress& step : m_person.steps) {
    EXPECT_GE(step.sectors_done, before);
    EXPECT_EQ(step.sectors_total, 750);
    EXPECT_EQ(step.tracks, 2);
    EXPECT_DOUBLE_EQ(step.fraction, static_cast<double>(step.sectors_done) / 750.0);
    before = step.sectors_done;
  }
  EXPECT_EQ(m_person.steps.front().track, 1);
  EXPECT_EQ(m_person.steps.back().track, 2);
  EXPECT_EQ(m_person.steps.back().phase, Phase::kWriting);
  EXPECT_EQ(m_person.steps.back().buffer_percent, 80);
}

TEST_F(Burn, WhoseUserInterfaceThrowsIsStoppedBeforeItsAudioGoes) {
  m_drive.stopping_steps = 3;
  m_person.on_progress = [](const BurnProgress& progress) {
    if (progress.phase == Phase::kWriting) throw std::runtime_error("the terminal is gone");
  };
  const Programme programme({300, 300});
  EXPECT_THROW(run(programme), std::runtime_error);
  EXPECT_EQ(m_drive.cancels, 1);
  EXPECT_EQ(m_drive.stopping_steps, 0) << "the drive was still writing";
  EXPECT_EQ(programme.producers[0]->cleaned, 1);
}

TEST_F(Burn, WhoseUserInterfaceThrowsLetsABlankingEnd) {
  putRewritable();
  m_person.blank = true;
  m_person.on_progress = [](const BurnProgress&) {
    throw std::runtime_error("the terminal is gone");
  };
  EXPECT_THROW(run(Programme({300})), std::runtime_error);
  EXPECT_EQ(m_drive.blankings, 1);
  EXPECT_EQ(m_drive.blanking_left, 0) << "the drive was still blanking";
  EXPECT_EQ(m_drive.cancels, 0) << "half a blanking leaves a disc that is of no use";
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
  m_properties.testing = true;
  const Outcome outcome = run(Programme({300}));
  EXPECT_TRUE(outcome.tested);
  EXPECT_FALSE(outcome.written);
  EXPECT_TRUE(m_drive.simulated);
  EXPECT_TRUE(m_drive.disc.empty());
}

TEST_F(Burn, ADryRunIsATestWriteWhateverTheBurnAsksFor) {
  m_options.dry_run = true;
  m_options.verify = true;
  const Outcome outcome = run(Programme({300}));
  EXPECT_TRUE(m_drive.simulated);
  EXPECT_TRUE(outcome.tested);
  EXPECT_FALSE(outcome.compared);
  EXPECT_THAT(outcome.disc_state, HasSubstr("it was a test"));
}

TEST_F(Burn, ADriveThatCannotTestIsNotLetToWriteInEarnest) {
  m_options.dry_run = true;
  m_drive.can_test_write = false;
  expectRefused(run(Programme({300})), "cannot make a test write");
}

TEST_F(Burn, AnAppendableOneLeavesTheDiscOpen) {
  m_properties.appendable = true;
  const Outcome outcome = run(Programme({300}));
  EXPECT_TRUE(m_drive.kept_open);
  EXPECT_THAT(outcome.disc_state, HasSubstr("open for another session"));
}

TEST_F(Burn, ALayoutThatIsNoAudioDiscIsRefusedBeforeTheDriveIsAsked) {
  expectRefused(run(Programme({300, 299})), "track 2 is shorter than 4 seconds");
}

TEST_F(Burn, AnEmptyTrayIsRefused) {
  m_drive.medium = {DiscCondition::kNone, "", false, false, 0, 0};
  expectRefused(run(Programme({300})), "there is no disc in the drive");
}

TEST_F(Burn, AClosedDiscIsRefused) {
  m_drive.medium = {DiscCondition::kClosed, "CD-R", true, false, 0, 0};
  expectRefused(run(Programme({300})), "written and closed");
}

TEST_F(Burn, ATooSmallDiscIsRefused) {
  m_drive.medium.free_sectors = 749;
  expectRefused(run(Programme({300, 450})), "has room for 00:09:74");
}

TEST_F(Burn, ARewritableDiscIsBlankedAfterAYes) {
  putRewritable();
  m_person.blank = true;
  const Programme programme({300});
  const Outcome outcome = run(programme);
  EXPECT_TRUE(outcome.written);
  EXPECT_EQ(m_drive.blankings, 1);
  EXPECT_EQ(m_drive.disc, programme.image());
  ASSERT_EQ(m_person.questions.size(), 1U);
  EXPECT_THAT(m_person.questions[0],
              HasSubstr("\"Acme Burner (/dev/sr0)\" holds a CD-RW that is written and closed"));
  EXPECT_EQ(m_person.steps.front().phase, Phase::kBlanking);
}

TEST_F(Burn, ANoLeavesTheRewritableDiscAlone) {
  putRewritable();
  expectRefused(run(Programme({300})), "which was not to be erased");
  EXPECT_EQ(m_person.questions.size(), 1U);
}

TEST_F(Burn, NobodyToAskIsANo) {
  putRewritable();
  m_options.user_interface = nullptr;
  EXPECT_THAT(run(Programme({300})).failure, HasSubstr("not to be erased"));
  EXPECT_EQ(m_drive.blankings, 0);
}

TEST_F(Burn, ADryRunBlanksNothingAndDoesNotAsk) {
  putRewritable();
  m_person.blank = true;
  m_options.dry_run = true;
  expectRefused(run(Programme({300})), "does not blank one");
  EXPECT_THAT(m_person.questions, IsEmpty());
}

TEST_F(Burn, WithoutOverwritingARewritableDiscIsRefused) {
  putRewritable();
  m_person.blank = true;
  m_properties.overwrite = false;
  expectRefused(run(Programme({300})), "may not overwrite");
}

TEST_F(Burn, ARewritableDiscThatIsTooSmallIsNotBlankedInVain) {
  putRewritable();
  m_drive.medium.capacity_sectors = 299;
  m_person.blank = true;
  expectRefused(run(Programme({300})), "room for");
}

TEST_F(Burn, AFailedBlankingEndsIt) {
  putRewritable();
  m_person.blank = true;
  m_drive.blanks_well = false;
  const Outcome outcome = run(Programme({300}));
  EXPECT_EQ(outcome.failure, "the disc could not be blanked") << "the drive did not say why";
  EXPECT_THAT(outcome.disc_state, HasSubstr("may be lost"));
  EXPECT_EQ(m_drive.writings, 0);
}

/// The trap: the recorder goes on with zeros and reports a good disc.
TEST_F(Burn, AFailedReadOfTheImageIsAFailureThoughTheRecorderReportsSuccess) {
  m_drive.goes_on_with_zeros = true;
  const Programme programme({300, 300});
  programme.producers[1]->fails_at_sector = 5;
  const Outcome outcome = run(programme);
  EXPECT_FALSE(outcome.written);
  EXPECT_THAT(outcome.failure, HasSubstr("could not be read at 00:04:05 (track 2)"));
}

TEST_F(Burn, AFailureThatNobodyExplainsIsToldAsOne) {
  m_drive.fails_silently_at = 350;
  EXPECT_EQ(run(Programme({300, 300})).failure, "the burn failed");
}

TEST_F(Burn, AFlawOfTheDiscIsToldWithItsPlace) {
  m_drive.flaw_at = 350;
  const Outcome outcome = run(Programme({300, 300}));
  EXPECT_TRUE(outcome.begun);
  EXPECT_FALSE(outcome.written);
  EXPECT_EQ(outcome.failure,
            "the burn failed: the drive stopped at 00:04:50 (track 2): the disc has a flaw there: "
            "it could not be written (sense 3 0C 00)");
  EXPECT_THAT(outcome.disc_state, HasSubstr("cannot be used any more"));
  EXPECT_THAT(m_person.failures, ElementsAre(outcome.failure + "; " + outcome.disc_state));
}

TEST_F(Burn, TheWishToStopStopsItAndTellsOfTheDisc) {
  m_person.on_progress = [this](const BurnProgress& step) {
    if (step.sectors_done >= 200) m_cancel = true;
  };
  const Outcome outcome = run(Programme({300, 450}));
  EXPECT_TRUE(outcome.cancelled);
  EXPECT_FALSE(outcome.written);
  EXPECT_EQ(outcome.failure, "the burn was stopped");
  EXPECT_THAT(outcome.disc_state, HasSubstr("written in part"));
  EXPECT_LT(m_drive.disc.size(), size_t{310} * disc::kBytesPerSector);
}

TEST_F(Burn, TheWishToStopBeforeItBeginsWritesNothing) {
  m_cancel = true;
  const Outcome outcome = run(Programme({300}));
  EXPECT_TRUE(outcome.cancelled);
  expectRefused(outcome, "stopped before it began");
}

TEST_F(Burn, AnErrorThatDidNotEndItIsToldAsAWarning) {
  m_drive.remark = "SCSI error on close session: [4 08 00] Hardware error.";
  EXPECT_TRUE(run(Programme({300})).written);
  ASSERT_EQ(m_person.warnings.size(), 1U);
  EXPECT_THAT(m_person.warnings[0], HasSubstr("the connection to the drive broke down"));
}

TEST_F(Burn, TheWishToStopThatComesWhenAllIsWrittenLetsTheDiscBeCompleted) {
  const Programme programme({300});
  m_person.on_progress = [this](const BurnProgress& step) {
    if (step.sectors_done == step.sectors_total) m_cancel = true;
  };
  m_drive.closing_steps = 2;
  const Outcome outcome = run(programme);
  EXPECT_TRUE(outcome.written);
  EXPECT_FALSE(outcome.cancelled);
  EXPECT_EQ(m_drive.cancels, 0);
  EXPECT_EQ(m_person.notes.size(), 1U);
}

TEST_F(Burn, ADriveThatIsFasterThanWishedIsWarnedOf) {
  m_options.speed = 1.0;
  run(Programme({300}));
  EXPECT_EQ(m_drive.speed, 1.0);
  ASSERT_EQ(m_person.warnings.size(), 1U);
  EXPECT_THAT(m_person.warnings[0], HasSubstr("about 4x"));
}

TEST_F(Burn, TextsComeFromTheCueSheet) {
  const auto path = std::filesystem::temp_directory_path() /
                    ("velmor_texts_" + std::to_string(getpid()) + ".cue");
  std::ofstream(path)
      << "TITLE \"Night Drive\"\r\n  TRACK 01 AUDIO\r\n    ISRC \"USABC0500001\"\r\n";
  m_options.text_sheet = path;
  const Outcome outcome = run(Programme({300}));
  std::filesystem::remove(path);
  EXPECT_TRUE(outcome.written);
  EXPECT_TRUE(m_drive.had_texts);
  EXPECT_EQ(m_drive.texts.block(disc::TextKind::kTitle).disc, "Night Drive");
  EXPECT_THAT(m_drive.texts.recording_codes, ElementsAre("USABC0500001"));
}

TEST_F(Burn, AMissingCueSheetIsToldBeforeAnythingIsWritten) {
  m_options.text_sheet = "/nowhere/album.cue";
  expectRefused(run(Programme({300})), "\"/nowhere/album.cue\" cannot be read");
}

TEST_F(Burn, AComparisonFollowsWhereItIsWanted) {
  for (const bool by_person : {true, false}) {
    m_options.verify = by_person;
    m_properties.verify = !by_person;
    m_drive = {};
    const Outcome outcome = run(Programme({300, 300}));
    EXPECT_TRUE(outcome.written);
    EXPECT_TRUE(outcome.compared);
    EXPECT_EQ(m_person.steps.back().phase, Phase::kComparing);
  }
}

TEST_F(Burn, ADiscThatCannotBeReadBackIsWrittenButNotCompared) {
  m_options.verify = true;
  m_drive.unreadable_from = 0;
  const Outcome outcome = run(Programme({300}));
  EXPECT_TRUE(outcome.written);
  EXPECT_FALSE(outcome.compared);
  ASSERT_EQ(m_person.warnings.size(), 1U);
  EXPECT_THAT(m_person.warnings[0], HasSubstr("not compared"));
}

}  // namespace
}  // namespace velmor::recording::testing
