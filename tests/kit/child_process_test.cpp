#include "tests/kit/child_process.h"

#include <gtest/gtest.h>

namespace test_kit {
namespace {

TEST(AChildProcess, TellsItsStatusAndKeepsItsTwoOutputsApart) {
  const EndedProcess ended = runShell("echo one; echo two >&2; exit 3");
  EXPECT_EQ(ended.status, 3);
  EXPECT_EQ(ended.out, "one\n");
  EXPECT_EQ(ended.err, "two\n");
  EXPECT_EQ(ended.all.size(), 8U);
}

TEST(AChildProcess, ThatIsEndedByASignalTellsIt) {
  EXPECT_EQ(runShell("kill -TERM $$").status, 128 + 15);
  EXPECT_EQ(runProcess({"no-such-program-at-all"}).status, -1);
}

TEST(AChildProcess, ThatNeverEndsIsKilledWhenItsTimeIsOverOrItHasPrintedEnough) {
  EXPECT_EQ(runShell("exec sleep 60", {.limit = std::chrono::seconds(0)}).status, 128 + 9);
  EXPECT_EQ(runShell("echo ready; exec sleep 60", {.stop_at = "ready"}).status, 128 + 9);
}

TEST(AChildProcess, SeesTheEnvironmentItIsGiven) {
  const EndedProcess ended =
      runShell("echo $HOME", {.environment = environmentWith({"HOME=/somewhere"})});
  EXPECT_EQ(ended.out, "/somewhere\n");
}

}  // namespace
}  // namespace test_kit
