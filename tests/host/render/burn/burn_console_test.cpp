// What the progress bar of a burn says.
#include "host/render/burn/burn_console.h"

#include <gtest/gtest.h>

namespace velmor::render {
namespace {

using recording::BurnProgress;
using recording::Phase;

BurnProgress halfWritten() {
  BurnProgress progress;
  progress.phase = Phase::kWriting;
  progress.track = 2;
  progress.tracks = 11;
  progress.sectors_done = 150'000;
  progress.sectors_total = 300'000;
  progress.fraction = 0.5;
  progress.speed = 8.04;
  return progress;
}

TEST(BurnProgressLine, TellsTheTrackTheSpeedAndWhatIsLeft) {
  const disc::ProgressLine line = progressLine(halfWritten());
  EXPECT_EQ(line.what, "Burning");
  EXPECT_EQ(line.part, 0.5);
  EXPECT_EQ(line.details, "track 2 of 11, 8.0x");
  ASSERT_TRUE(line.seconds_left);
  EXPECT_DOUBLE_EQ(*line.seconds_left, 2000.0 / 8.04);
}

TEST(BurnProgressLine, TellsNoTrackAndNoSpeedThatIsNotKnown) {
  BurnProgress progress = halfWritten();
  progress.track = 0;
  EXPECT_EQ(progressLine(progress).details, "8.0x");
  progress.speed = 0.0;
  EXPECT_EQ(progressLine(progress).details, "");
  EXPECT_FALSE(progressLine(progress).seconds_left);
}

TEST(BurnProgressLine, NamesEachPhaseAndMeasuresThoseThatHaveALength) {
  const struct {
    Phase phase;
    const char* what;
    bool has_length;
  } cases[] = {
      {Phase::kPreparing, "Preparing the disc", false}, {Phase::kBlanking, "Erasing", true},
      {Phase::kLeadIn, "Writing the lead-in", false},   {Phase::kWriting, "Burning", true},
      {Phase::kClosing, "Closing the disc", false},     {Phase::kComparing, "Comparing", true}};
  for (const auto& [phase, what, has_length] : cases) {
    BurnProgress progress = halfWritten();
    progress.phase = phase;
    const disc::ProgressLine line = progressLine(progress);
    EXPECT_EQ(line.what, what);
    EXPECT_EQ(line.part.has_value(), has_length) << what;
  }
}

}  // namespace
}  // namespace velmor::render
