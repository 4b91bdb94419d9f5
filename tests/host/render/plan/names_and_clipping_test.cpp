#include <gtest/gtest.h>

#include <cmath>

#include "host/render/album/mark_names.h"
#include "host/render/album/sheet_text.h"
#include "host/render/module/clipping.h"

namespace velmor::render {
namespace {

TEST(Clipping, CountsWhatLiesBeyondFullScaleAndWhatIsNoNumber) {
  Clipping clipping;
  const auto look = [&clipping](const std::vector<double>& left, const std::vector<double>& right,
                                int64_t start) { clipping.look(left, right, start); };
  look({0.0, 1.0, -1.0}, {1.0, -1.0, 0.5}, 0);
  EXPECT_EQ(clipping.samples, 0);
  EXPECT_EQ(clipping.first_frame, -1);
  const double over = std::nextafter(1.0, 2.0);
  look({0.0, 0.0, -over}, {0.0, std::nan(""), over}, 1000);
  EXPECT_EQ(clipping.samples, 3);
  EXPECT_EQ(clipping.first_frame, 1001);
  EXPECT_EQ(clipping.worst_frame, 1001);
  EXPECT_EQ(clipping.peak, HUGE_VAL) << "what is no number has no peak";
  look({2.0}, {HUGE_VAL}, 5000);
  EXPECT_EQ(clipping.samples, 5);
  EXPECT_EQ(clipping.first_frame, 1001);
  look({}, {}, 9000);
  EXPECT_EQ(clipping.samples, 5);
}

TEST(Clipping, KnowsThePlaceFurthestBeyondFullScale) {
  Clipping clipping;
  const std::vector<double> silent(3);
  const auto look = [&](const std::vector<double>& left, int64_t start) {
    clipping.look(left, silent, start);
    clipping.look(silent, left, start + 3);
  };
  look({1.25, 0.0, -1.5}, 100);
  EXPECT_EQ(clipping.worst_frame, 102);
  EXPECT_EQ(clipping.peak, 1.5);
  look({0.0, 2.0, 1.0}, 200);
  EXPECT_EQ(clipping.worst_frame, 201) << "the first of two equal ones";
  EXPECT_EQ(clipping.peak, 2.0);
  EXPECT_EQ(clipping.first_frame, 100);
  EXPECT_EQ(clipping.samples, 6);
}

TEST(MarkNames, TagsAreKnownByFiveCharactersInAnyCase) {
  for (const char* const tag : {"PERF=Ana", "perf=", "Writ=x", "iSrC=USABC2600001"}) {
    EXPECT_TRUE(isTag(tag)) << tag;
    EXPECT_FALSE(namesTrack(tag, false)) << tag;
    EXPECT_FALSE(namesTrack(tag, true)) << tag;
  }
  for (const char* const name : {"", "PERF", " PERF=x", "#PERF=x", "TITLE=x"}) {
    EXPECT_FALSE(isTag(name)) << name;
    EXPECT_TRUE(namesTrack(name, false)) << name;
  }
  EXPECT_TRUE(namesTrack("#PERF=x", true));
  EXPECT_FALSE(namesTrack("", true));
  EXPECT_EQ(trackTitle("#One", true), "One");
  EXPECT_EQ(trackTitle("#One", false), "#One");
  EXPECT_EQ(trackTitle("Say \"Go\"", false), "Say 'Go'");
}

TEST(SheetText, KeepsWhatASheetCanHoldAndSaysWhatItChanges) {
  std::vector<std::string> warnings;
  EXPECT_EQ(fitForSheet("C:\\music \xC3\xA4", warnings), "C:\\music \xC3\xA4");
  EXPECT_TRUE(warnings.empty());
  EXPECT_EQ(fitForSheet("Say \"Go\"\r\nnow\x7F", warnings), "Say 'Go'  now ");
  EXPECT_EQ(fitForSheet("AC\\", warnings), "AC/");
  EXPECT_EQ(warnings.size(), 2U);
}

TEST(SheetText, CutsWhatIsTooLongForALineOfTheSheetBetweenCharacters) {
  std::vector<std::string> warnings;
  std::string text;
  while (text.size() < 6000) text += "\xE2\x82\xAC";
  const std::string fit = fitForSheet(text, warnings);
  EXPECT_LT(fit.size(), 4000U) << "a line of the sheet holds 4095 bytes";
  EXPECT_GT(fit.size(), 900U);
  EXPECT_EQ(fit.size() % 3, 0U) << "cut inside a character";
  EXPECT_EQ(text.compare(0, fit.size(), fit), 0);
  EXPECT_EQ(warnings.size(), 1U);
}

}  // namespace
}  // namespace velmor::render
