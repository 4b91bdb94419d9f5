#include "host/render/output/made_along.h"

#include <gtest/gtest.h>

#include <csignal>

#include "disc/failure.h"
#include "disc/terminal/interrupt.h"

namespace velmor::render {
namespace {

TEST(MadeAlong, SaysNothingWhenAllIsThere) {
  MadeAlong made;
  makeAlong(made, [] {});
  EXPECT_EQ(made.failure, "");
  EXPECT_FALSE(made.interrupted);
  EXPECT_EQ(statusOf(made), 0);
}

TEST(MadeAlong, SaysWhyItIsNotThere) {
  MadeAlong made;
  makeAlong(made, [] { throw Failure("the disk is full"); });
  EXPECT_EQ(made.failure, "the disk is full");
  EXPECT_FALSE(made.interrupted);
  EXPECT_EQ(statusOf(made), 1);
}

/// As the program does when Ctrl-C comes while it makes something along.
[[noreturn]] void endInterrupted() {
  signal(SIGINT, SIG_DFL);
  watchForInterrupts();
  MadeAlong made{"set", "", false};
  makeAlong(made, [] {
    raise(SIGINT);
    stopIfInterrupted();
  });
  exit(statusOf(made));
}

TEST(MadeAlongDeathTest, EndsTheProgramAsInterrupted) {
  EXPECT_EXIT(endInterrupted(), testing::ExitedWithCode(130),
              "the sheet and the image are complete, but \"set\" was not written: interrupted");
}

}  // namespace
}  // namespace velmor::render
