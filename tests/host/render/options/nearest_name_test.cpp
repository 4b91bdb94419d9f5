// Which word a misspelt one was meant to be.
#include "host/render/options/nearest_name.h"

#include <gtest/gtest.h>

namespace velmor::render {
namespace {

TEST(SpellingDistance, CountsTheLettersThatDiffer) {
  EXPECT_EQ(spellingDistance("", ""), 0U);
  EXPECT_EQ(spellingDistance("title", "title"), 0U);
  EXPECT_EQ(spellingDistance("", "abc"), 3U);
  EXPECT_EQ(spellingDistance("abc", ""), 3U);
  EXPECT_EQ(spellingDistance("titel", "title"), 1U) << "two letters swapped";
  EXPECT_EQ(spellingDistance("titl", "title"), 1U);
  EXPECT_EQ(spellingDistance("titlee", "title"), 1U);
  EXPECT_EQ(spellingDistance("tutle", "title"), 1U);
  EXPECT_EQ(spellingDistance("kitten", "sitting"), 3U);
}

TEST(NearestName, IsTheOneWithTheFewestDifferences) {
  const std::vector<std::string> names = {"drive", "dry-run", "labels", "title", "titles"};
  EXPECT_EQ(nearestName("lables", names), "labels");
  EXPECT_EQ(nearestName("label", names), "labels");
  EXPECT_EQ(nearestName("title", names), "title");
  EXPECT_EQ(nearestName("tilte", names), "title");
  EXPECT_EQ(nearestName("nonsense", names), std::nullopt);
  EXPECT_EQ(nearestName("", names), std::nullopt);
  EXPECT_EQ(nearestName("drive", {}), std::nullopt);
  EXPECT_EQ(nearestName("ends", {"end", "sends", "bends"}), "end") << "the first of the nearest";
}

}  // namespace
}  // namespace velmor::render
