// Burning with somebody at the terminal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/render/burn/burn_program_case.h"
#include "tests/kit/terminal_run.h"

namespace burn_test {
namespace {

using test_kit::TerminalRun;
using testing::HasSubstr;
using velmor::emulated_drive::DiscStatus;
using velmor::emulated_drive::DriveSettings;
using velmor::emulated_drive::EmulatedDisc;

class BurnTerminal : public BurnProgramCase {};

TEST_F(BurnTerminal, AFailedBurnIsTriedAgainWithoutAnotherRender) {
  insert(0, std::nullopt);
  TerminalRun run(line(kShort));
  ASSERT_TRUE(run.waitFor("Try again? [y/N]")) << run.output();
  EXPECT_TRUE(exists("album.bin")) << "the image is safe before the burn";
  run.type("y\n");
  ASSERT_TRUE(run.waitFor("Try again? [y/N]")) << run.output();
  insert(0, EmulatedDisc());
  run.type("yes\n");
  EXPECT_EQ(run.finish(), 0) << run.output();
  EXPECT_TRUE(burned(0) == image());
}

TEST_F(BurnTerminal, AFailedBurnIsNotTriedAgainByDefault) {
  insert(0, std::nullopt);
  TerminalRun run(line(std::string(kShort) + "--delete-image"));
  ASSERT_TRUE(run.waitFor("Try again? [y/N]")) << run.output();
  run.type("\n");
  EXPECT_EQ(run.finish(), 1);
  EXPECT_TRUE(exists("album.bin"));
}

TEST_F(BurnTerminal, ARecorderThatCanBeOpenedAfterTheFirstTryIsFound) {
  for (const int drive : {0, 1}) change(drive, [](DriveSettings& s) { s.deny = true; });
  TerminalRun run(line(kShort));
  ASSERT_TRUE(run.waitFor("Select a recorder")) << run.output();
  ASSERT_TRUE(run.waitFor("Try again? [y/N]")) << run.output();
  change(1, [](DriveSettings& s) { s.deny = false; });
  run.type("y\n");
  EXPECT_EQ(run.finish(), 0) << run.output();
  EXPECT_EQ(disc(1).state, DiscStatus::kComplete);
}

TEST_F(BurnTerminal, CopiesAreBurnedOneAfterTheOther) {
  TerminalRun run(line(std::string(kShort) + "--copies 3 --delete-image"));
  for (int copy = 2; copy <= 3; ++copy) {
    ASSERT_TRUE(run.waitFor("copy " + std::to_string(copy) + " of 3, then press Enter"))
        << run.output();
    EXPECT_TRUE(burned(0) == image()) << "copy " << copy - 1;
    EXPECT_TRUE(m_drives[0].trayOpen()) << "the finished one is handed out";
    insert(0, EmulatedDisc());
    run.type("\n");
  }
  EXPECT_EQ(run.finish(), 0) << run.output();
  EXPECT_EQ(disc(0).state, DiscStatus::kComplete);
  EXPECT_FALSE(m_drives[0].trayOpen()) << "the last one is left in the drive";
  EXPECT_THAT(run.output(), HasSubstr("3 discs written"));
  EXPECT_FALSE(exists("album.bin"));
}

TEST_F(BurnTerminal, CopiesEndWhenThePersonHasEnough) {
  TerminalRun run(line(std::string(kShort) + "--copies 3"));
  ASSERT_TRUE(run.waitFor("copy 2 of 3, then press Enter")) << run.output();
  run.type("q\n");
  EXPECT_EQ(run.finish(), 1) << run.output();
  EXPECT_THAT(run.output(), HasSubstr("1 disc written"));
}

TEST_F(BurnTerminal, ARewritableDiscIsErasedAfterAYes) {
  EmulatedDisc disc_in;
  disc_in.medium = velmor::emulated_drive::MediumType::kCdRw;
  insert(0, closed(disc_in));
  TerminalRun run(line(kShort));
  ASSERT_TRUE(run.waitFor("Erase all that is on it? [y/N]")) << run.output();
  run.type("y\n");
  EXPECT_EQ(run.finish(), 0) << run.output();
  EXPECT_TRUE(burned(0) == image());
}

TEST_F(BurnTerminal, CtrlCStopsTheBurnAndTellsWhatBecameOfTheDisc) {
  change(0, [](DriveSettings& s) { s.faults.write_delay = std::chrono::milliseconds(200); });
  TerminalRun run(line(std::string(kAlbum) + "--delete-image"));
  ASSERT_TRUE(run.waitFor("Burning [")) << run.output();
  // The bar is drawn before the laser is on; until the first WRITE the disc would stay blank.
  ASSERT_TRUE(waitUntilBegun(0));
  run.type("\x03");
  EXPECT_EQ(run.finish(), 130) << run.output();
  EXPECT_THAT(run.output(), HasSubstr("the burn was stopped"));
  EXPECT_THAT(run.output(), HasSubstr("cannot be used any more"));
  EXPECT_THAT(run.output(), HasSubstr("interrupted; the image is complete: \"album.bin\""));
  EXPECT_EQ(image().size(), size_t{960} * 2352);
  EXPECT_NE(disc(0).state, DiscStatus::kComplete);
}

TEST_F(BurnTerminal, CtrlCAtAQuestionIsANo) {
  insert(0, std::nullopt);
  TerminalRun run(line(kShort));
  ASSERT_TRUE(run.waitFor("Try again? [y/N]")) << run.output();
  run.type("\x03");
  EXPECT_NE(run.finish(), 0) << run.output();
  EXPECT_TRUE(exists("album.bin"));
}

TEST_F(BurnTerminal, TheProgressShowsTheTrack) {
  change(0, [](DriveSettings& s) { s.faults.write_delay = std::chrono::milliseconds(10); });
  TerminalRun run(line(kAlbum));
  EXPECT_TRUE(run.waitFor("Burning [")) << run.output();
  EXPECT_TRUE(run.waitFor(" of 3")) << run.output();
  EXPECT_EQ(run.finish(), 0) << run.output();
}

}  // namespace
}  // namespace burn_test
