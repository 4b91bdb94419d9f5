#include "disc/text/words.h"

#include <gtest/gtest.h>

namespace velmor::disc::test {
namespace {

TEST(Words, StandBetweenBlanksOfEveryKind) {
  std::string_view rest = "\v one\ttwo\vthree\ffour  five\f";
  for (const char* word : {"one", "two", "three", "four", "five", "", ""})
    EXPECT_EQ(takeWord(rest), word);
}

TEST(Words, AreTrimmedAtBothEnds) {
  EXPECT_EQ(trimmed("\f\v\t a b \t\v\f"), "a b");
  EXPECT_EQ(trimmed("a\n"), "a\n");
  EXPECT_EQ(trimmed(" \t"), "");
}

}  // namespace
}  // namespace velmor::disc::test
