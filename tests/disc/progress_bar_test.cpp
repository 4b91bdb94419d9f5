// The bar of every program.
#include "disc/terminal/progress_bar.h"

#include <gtest/gtest.h>

namespace velmor::disc::test {
namespace {

TEST(ProgressBar, IsFilledByItsPart) {
  EXPECT_EQ(barText(0.0), "[" + std::string(30, '.') + "]");
  EXPECT_EQ(barText(0.5), "[" + std::string(15, '#') + std::string(15, '.') + "]");
  EXPECT_EQ(barText(1.0), "[" + std::string(30, '#') + "]");
  EXPECT_EQ(barText(-1.0), barText(0.0));
  EXPECT_EQ(barText(7.0), barText(1.0));
}

TEST(ProgressBar, IsNotDrawnUnlessWanted) {
  ProgressBar bar(false);
  EXPECT_FALSE(bar.due());
  testing::internal::CaptureStderr();
  bar.draw("line");
  bar.clear();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace velmor::disc::test
