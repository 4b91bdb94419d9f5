#include "page/markup/markup.h"

#include <gtest/gtest.h>

#include <limits>

#include "page/album/shown_text.h"

namespace velmor::page::test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Markup, LeavesNoCharacterThatAPageGivesAMeaningTo) {
  EXPECT_EQ(escaped("<a href='x'>\"&amp;\"</a>"),
            "&lt;a href=&#39;x&#39;&gt;&quot;&amp;amp;&quot;&lt;/a&gt;");
  EXPECT_EQ(escaped("Größe"), "Größe");
}

TEST(Markup, KeepsAForeignDirectionOfWritingToItself) {
  EXPECT_EQ(foreign("שלום"), "<bdi>שלום</bdi>");
  EXPECT_EQ(foreign(""), "");
}

TEST(Markup, WritesNumbersWithATrueMinusAndNoSignBeforeZero) {
  EXPECT_EQ(decimal(-9.66, 1), "\u22129.7");
  EXPECT_EQ(decimal(-0.04, 1), "0.0");
  EXPECT_EQ(decimal(-kInfinity, 1), "\u2212\u221E");
  EXPECT_EQ(signedDecimal(0.26, 1), "+0.3");
  EXPECT_EQ(signedDecimal(0.04, 1), "0.0");
  EXPECT_EQ(signedDecimal(-1.0, 1), "\u22121.0");
}

TEST(Markup, KeepsAShareBetweenNothingAndAll) {
  EXPECT_EQ(percent(1, 8), "12.500");
  EXPECT_EQ(percent(-1, 8), "0.000");
  EXPECT_EQ(percent(9, 8), "100.000");
}

TEST(ShownText, IsOneLineOfUtf8AndEndsWhereNoDiscGoesOn) {
  EXPECT_EQ(shownText("Ana\tand\x1B Bo"), "Ana and  Bo");
  EXPECT_EQ(shownText("Caf\xE9"), "Café");
  const std::string long_text = shownText(std::string(100'000, 'x'));
  EXPECT_EQ(long_text.size(), 2000 + std::string("…").size());
  EXPECT_TRUE(long_text.ends_with("…"));
}

}  // namespace
}  // namespace velmor::page::test
