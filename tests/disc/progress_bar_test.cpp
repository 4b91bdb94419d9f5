// The bar of every program.
#include "disc/terminal/progress_bar.h"

#include <gtest/gtest.h>

namespace velmor::disc::test {
namespace {

std::string bar(double part) {
  return textOf({"X", part, "", {}}, 80);
}

TEST(ProgressBar, IsFilledByItsPart) {
  EXPECT_EQ(bar(0.0), "X [" + std::string(30, '.') + "]   0 %");
  EXPECT_EQ(bar(0.5), "X [" + std::string(15, '#') + std::string(15, '.') + "]  50 %");
  EXPECT_EQ(bar(1.0), "X [" + std::string(30, '#') + "] 100 %");
  EXPECT_EQ(bar(-1.0), bar(0.0));
  EXPECT_EQ(bar(7.0), bar(1.0));
}

TEST(ProgressBar, FitsTheTerminal) {
  const ProgressLine line{"Rendering", 0.42, "55x real time", 62.1};
  const std::string whole = "Rendering [" + std::string(12, '#') + std::string(18, '.') +
                            "]  42 %  55x real time, 1:03 left";
  EXPECT_EQ(textOf(line, 80), whole);
  EXPECT_EQ(textOf(line, whole.size()), whole);
  EXPECT_EQ(textOf(line, whole.size() - 1), "Rendering  42 %  55x real time, 1:03 left");
  EXPECT_EQ(textOf(line, 40), "Rendering  42 %  1:03 left");
  EXPECT_EQ(textOf(line, 26), "Rendering  42 %  1:03 left");
  EXPECT_EQ(textOf(line, 25), "Rendering  42 %");
  EXPECT_EQ(textOf(line, 4), "Rend");
  EXPECT_LE(textOf({"Rendering", 1.0, "55x real time", 36000.0}, 29).size(), 29U);
  EXPECT_EQ(textOf({"Closing the disc", {}, "", {}}, 80), "Closing the disc ...");
}

TEST(ProgressBar, IsNotDrawnUnlessWanted) {
  ProgressBar bar(false);
  EXPECT_FALSE(bar.due());
  testing::internal::CaptureStderr();
  bar.draw({"line", 0.5, "", {}});
  bar.clear();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace velmor::disc::test
