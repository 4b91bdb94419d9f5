// Burning with somebody at the terminal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/render/burn/burn_program_case.h"
#include "tests/host/render/burn/terminal_run.h"

namespace burn_test {
namespace {

using testing::HasSubstr;
using velmor::recorder::Disc;
using velmor::recorder::DiscState;
using velmor::recorder::Settings;

class BurnTerminal : public BurnProgramCase {};

TEST_F(BurnTerminal, AFailedBurnIsTriedAgainWithoutAnotherRender) {
  Insert(0, std::nullopt);
  TerminalRun run(Line(kShort));
  ASSERT_TRUE(run.WaitFor("Try again? [y/N]")) << run.output();
  EXPECT_TRUE(Exists("album.bin")) << "the image is safe before the burn";
  run.Type("y\n");
  ASSERT_TRUE(run.WaitFor("Try again? [y/N]")) << run.output();
  Insert(0, Disc());
  run.Type("yes\n");
  EXPECT_EQ(run.Finish(), 0) << run.output();
  EXPECT_TRUE(burned(0) == Image());
}

TEST_F(BurnTerminal, AFailedBurnIsNotTriedAgainByDefault) {
  Insert(0, std::nullopt);
  TerminalRun run(Line(std::string(kShort) + "--delete-image"));
  ASSERT_TRUE(run.WaitFor("Try again? [y/N]")) << run.output();
  run.Type("\n");
  EXPECT_EQ(run.Finish(), 1);
  EXPECT_TRUE(Exists("album.bin"));
}

TEST_F(BurnTerminal, ARecorderThatCanBeOpenedAfterTheFirstTryIsFound) {
  for (const int drive : {0, 1}) change(drive, [](Settings& s) { s.deny = true; });
  TerminalRun run(Line(kShort));
  ASSERT_TRUE(run.WaitFor("Select a recorder")) << run.output();
  ASSERT_TRUE(run.WaitFor("Try again? [y/N]")) << run.output();
  change(1, [](Settings& s) { s.deny = false; });
  run.Type("y\n");
  EXPECT_EQ(run.Finish(), 0) << run.output();
  EXPECT_EQ(disc(1).state, DiscState::complete);
}

TEST_F(BurnTerminal, CopiesAreBurnedOneAfterTheOther) {
  TerminalRun run(Line(std::string(kShort) + "--copies 3 --delete-image"));
  for (int copy = 2; copy <= 3; ++copy) {
    ASSERT_TRUE(run.WaitFor("copy " + std::to_string(copy) + " of 3, then press Enter"))
        << run.output();
    EXPECT_TRUE(burned(0) == Image()) << "copy " << copy - 1;
    EXPECT_TRUE(drives[0].trayOpen()) << "the finished one is handed out";
    Insert(0, Disc());
    run.Type("\n");
  }
  EXPECT_EQ(run.Finish(), 0) << run.output();
  EXPECT_EQ(disc(0).state, DiscState::complete);
  EXPECT_FALSE(drives[0].trayOpen()) << "the last one is left in the drive";
  EXPECT_THAT(run.output(), HasSubstr("3 discs written"));
  EXPECT_FALSE(Exists("album.bin"));
}

TEST_F(BurnTerminal, CopiesEndWhenThePersonHasEnough) {
  TerminalRun run(Line(std::string(kShort) + "--copies 3"));
  ASSERT_TRUE(run.WaitFor("copy 2 of 3, then press Enter")) << run.output();
  run.Type("q\n");
  EXPECT_EQ(run.Finish(), 1) << run.output();
  EXPECT_THAT(run.output(), HasSubstr("1 disc written"));
}

TEST_F(BurnTerminal, ARewritableDiscIsErasedAfterAYes) {
  Disc disc_in;
  disc_in.medium = velmor::recorder::Medium::cdRw;
  Insert(0, Closed(disc_in));
  TerminalRun run(Line(kShort));
  ASSERT_TRUE(run.WaitFor("Erase all that is on it? [y/N]")) << run.output();
  run.Type("y\n");
  EXPECT_EQ(run.Finish(), 0) << run.output();
  EXPECT_TRUE(burned(0) == Image());
}

TEST_F(BurnTerminal, CtrlCStopsTheBurnAndTellsWhatBecameOfTheDisc) {
  change(0, [](Settings& s) { s.faults.writeDelay = std::chrono::milliseconds(50); });
  TerminalRun run(Line(std::string(kAlbum) + "--delete-image"));
  ASSERT_TRUE(run.WaitFor("Burning [")) << run.output();
  run.Type("\x03");
  EXPECT_EQ(run.Finish(), 130) << run.output();
  EXPECT_THAT(run.output(), HasSubstr("The burn was stopped."));
  EXPECT_THAT(run.output(), HasSubstr("cannot be used any more"));
  EXPECT_THAT(run.output(), HasSubstr("interrupted; the image is complete: album.bin"));
  EXPECT_EQ(Image().size(), size_t{960} * 2352);
  EXPECT_NE(disc(0).state, DiscState::complete);
}

TEST_F(BurnTerminal, CtrlCAtAQuestionIsANo) {
  Insert(0, std::nullopt);
  TerminalRun run(Line(kShort));
  ASSERT_TRUE(run.WaitFor("Try again? [y/N]")) << run.output();
  run.Type("\x03");
  EXPECT_NE(run.Finish(), 0) << run.output();
  EXPECT_TRUE(Exists("album.bin"));
}

TEST_F(BurnTerminal, TheProgressShowsTheTrack) {
  change(0, [](Settings& s) { s.faults.writeDelay = std::chrono::milliseconds(10); });
  TerminalRun run(Line(kAlbum));
  EXPECT_TRUE(run.WaitFor("Burning [")) << run.output();
  EXPECT_TRUE(run.WaitFor(" of 3")) << run.output();
  EXPECT_EQ(run.Finish(), 0) << run.output();
}

}  // namespace
}  // namespace burn_test
