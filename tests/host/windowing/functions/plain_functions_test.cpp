#include <gtest/gtest.h>

#include <climits>

#include "host/windowing/functions/layer_functions.h"

namespace velmor::windowing::functions {
namespace {

TEST(PlainFunctions, MulDivRoundsToTheNearestAndSaysWhatDoesNotFit) {
  const struct {
    int number, numerator, denominator, result;
  } cases[] = {
      {10, 3, 4, 8},
      {7, 1, 2, 4},
      {-7, 1, 2, -4},
      {7, -1, 2, -4},
      {-7, -1, -2, -4},
      {7, 1, -2, -4},
      {1, 1, 3, 0},
      {INT_MAX, INT_MAX, INT_MAX, INT_MAX},
      {INT_MAX, 2, 1, -1},
      {INT_MIN, -1, 1, -1},
      {INT_MIN, 1, INT_MIN, 1},
      {5, 5, 0, -1},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(MulDiv(each.number, each.numerator, each.denominator), each.result)
        << each.number << " * " << each.numerator << " / " << each.denominator;
  }
}

TEST(PlainFunctions, ACopyAlwaysEndsWithinItsBuffer) {
  char to[4] = "???";
  EXPECT_EQ(lstrcpyn(to, "abcdef", 4), to);
  EXPECT_STREQ(to, "abc");
  lstrcpyn(to, "xy", 4);
  EXPECT_STREQ(to, "xy");
  lstrcpyn(to, "zz", 0);
  EXPECT_STREQ(to, "xy");
  lstrcpyn(to, nullptr, 4);
  EXPECT_STREQ(to, "");
}

TEST(PlainFunctions, TheClockAdvancesAtLeastAsLongAsASleep) {
  const UINT before = GetTickCount();
  Sleep(5);
  EXPECT_GE(GetTickCount() - before, 4U);
  Sleep(-1);
  Sleep(0);
}

}  // namespace
}  // namespace velmor::windowing::functions
