#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "disc/codes.h"
#include "disc/disc_time.h"
#include "host/render/album/mark_names.h"
#include "host/render/album/sheet_text.h"
#include "host/render/module/clipping.h"

namespace velmor::render {
namespace {

TEST(Isrc, HasTwoLettersThreeLettersOrDigitsAndSevenDigits) {
  EXPECT_EQ(normalisedIsrc("USABC2600001"), "USABC2600001");
  EXPECT_EQ(normalisedIsrc("GB1232600001"), "GB1232600001");
  EXPECT_EQ(normalisedIsrc("us-abc-26-00001"), "USABC2600001");
  for (const char* const wrong :
       {"", "-", "USABC260000", "USABC26000011", "U1ABC2600001", "1SABC2600001", "USAB-C26000O1",
        "USABC26A0001", "USABC 260001", "US\303\204B2600001", "USABC2600001 "}) {
    EXPECT_EQ(normalisedIsrc(wrong), std::nullopt) << wrong;
  }
}

TEST(Catalogue, HasThirteenDigitsOfWhichTheLastIsTheEan13CheckDigit) {
  // Worked by hand: 0+3*7+3+3*1+4+3*5+2+3*3+4+3*5+6+3*2 = 88, so 2.
  EXPECT_EQ(catalogueFault("0731452345622"), std::nullopt);
  EXPECT_EQ(catalogueFault("4006381333931"), std::nullopt);
  EXPECT_EQ(catalogueFault("0000000000000"), std::nullopt);
  EXPECT_EQ(catalogueFault("0731452345620"), "has the check digit 0 where 2 is right");
  EXPECT_EQ(catalogueFault("731452345622"),
            "has 12 digits where 13 are needed; a UPC takes a 0 in front");
  EXPECT_EQ(catalogueFault("12"), "has 2 digits where 13 are needed");
  EXPECT_EQ(catalogueFault("07314523456222"), "has 14 digits where 13 are needed");
  EXPECT_EQ(catalogueFault("073145234562X"), "holds more than digits");
  EXPECT_EQ(catalogueFault("0-731452-34562"), "holds more than digits");
}

TEST(DiscTime, CountsSeventyFiveSectorsASecond) {
  EXPECT_EQ(msfOf(0), "00:00:00");
  EXPECT_EQ(msfOf(74), "00:00:74");
  EXPECT_EQ(msfOf(75), "00:01:00");
  EXPECT_EQ(msfOf(4499), "00:59:74");
  EXPECT_EQ(msfOf(333000), "74:00:00");
  EXPECT_EQ(msfOf(449999), "99:59:74");
  EXPECT_EQ(msfOf(450000), "100:00:00");
  EXPECT_EQ(msfOf(std::numeric_limits<int64_t>::max()).size(), 22U);
}

TEST(DiscTime, RoundsAClockTimeToMillisecondsWithCarry) {
  EXPECT_EQ(clockTime(0.0), "0:00.000");
  EXPECT_EQ(clockTime(59.9996), "1:00.000");
  EXPECT_EQ(clockTime(61.5), "1:01.500");
  EXPECT_EQ(clockTime(3599.9994), "59:59.999");
  EXPECT_EQ(clockTime(3599.9996), "1:00:00.000");
  EXPECT_EQ(counted(1, "sample"), "1 sample");
  EXPECT_EQ(counted(0, "sample"), "0 samples");
}

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
  look({2.0}, {HUGE_VAL}, 5000);
  EXPECT_EQ(clipping.samples, 5);
  EXPECT_EQ(clipping.first_frame, 1001);
  look({}, {}, 9000);
  EXPECT_EQ(clipping.samples, 5);
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
