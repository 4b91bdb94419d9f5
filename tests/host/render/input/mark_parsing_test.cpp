// Times, markers and regions as people type them.
#include "host/render/input/marks/mark_parsing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "disc/failure.h"
#include "tests/host/render/input/sound_files.h"

namespace velmor::render::test {
namespace {

using testing::HasSubstr;

TEST(Time, IsSecondsOrMinutesWithMillisecondsOrFrames) {
  struct Case {
    const char* text;
    double seconds;
  };
  for (const Case& c :
       {Case{"0", 0.0}, Case{"12.5", 12.5}, Case{"12.", 12.0}, Case{".5", 0.5}, Case{"007", 7.0},
        Case{"4800", 4800.0}, Case{"3:07", 187.0}, Case{"03:07.250", 187.25},
        Case{"0:59.999", 59.999}, Case{"79:57", 4797.0}, Case{"100:00", 6000.0},
        Case{"03:07:00", 187.0}, Case{"03:07:15", 187.2}, Case{"00:00:74", 74.0 / 75.0},
        Case{"99:59:74", 5999.0 + 74.0 / 75.0}, Case{"1:5:3", 65.04}, Case{"1:02:03.000", 3723.0},
        Case{"0:00:01.5", 1.5}, Case{"1000000000", 1e9}}) {
    EXPECT_NEAR(parseTime(c.text), c.seconds, 1e-9) << c.text;
  }
}

TEST(Time, OfThreeNumbersMayBeHoursToo) {
  std::vector<TwoFacedTime> found;
  EXPECT_NEAR(parseTime("01:02:03", &found), 62.04, 1e-9);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].text, "01:02:03");
  EXPECT_NEAR(found[0].as_frames, 62.04, 1e-9);
  EXPECT_EQ(found[0].as_hours, 3723.0);
  for (const char* const plain : {"3723", "62:03", "1:02:03.0", "62:03:74", "0:59:60"}) {
    parseTime(plain, &found);
    EXPECT_EQ(found.size(), 1U) << plain;
  }
  parseMarkerOption("0:00:01=x", &found);
  parseRegionOption("0-0:00:59=x", &found);
  ASSERT_EQ(found.size(), 3U);
  EXPECT_EQ(found[1].as_hours, 1.0);
  EXPECT_EQ(found[2].as_hours, 59.0);
}

TEST(Time, ThatIsNoneIsRefused) {
  for (const std::string& text : std::vector<std::string>{"",
                                                          " ",
                                                          ".",
                                                          "-1",
                                                          "+1",
                                                          "-0",
                                                          "1e3",
                                                          "0x10",
                                                          "nan",
                                                          "inf",
                                                          "NaN",
                                                          "infinity",
                                                          "1,5",
                                                          "12.5s",
                                                          " 1",
                                                          "1 ",
                                                          "1.2.3",
                                                          ":",
                                                          "::",
                                                          "1:",
                                                          ":1",
                                                          "1::",
                                                          "1:2:",
                                                          ":1:2",
                                                          "1:60",
                                                          "1:60.0",
                                                          "1:59:75",
                                                          "1:60:00",
                                                          "1:2:3:4",
                                                          "1.5:00",
                                                          "1:2.5:3",
                                                          "1:60:3.5",
                                                          "1:2:60.5",
                                                          "1:2:3.5.5",
                                                          "-1:00",
                                                          "1:-2",
                                                          "1:2:-3",
                                                          "1000000001",
                                                          "99999999999999999999",
                                                          "99999999999999999999:00",
                                                          "16666667:00",
                                                          "0:18446744073709551617:0",
                                                          std::string(400, '9'),
                                                          std::string("1\0", 2),
                                                          "\xff\xfe",
                                                          "१"}) {
    const std::string error = errorOf([&] { parseTime(text); });
    EXPECT_THAT(error, HasSubstr("is no time: ")) << text;
  }
}

TEST(MarkerOption, IsATimeAndAName) {
  const Mark mark = parseMarkerOption("1:30=Second song");
  EXPECT_DOUBLE_EQ(mark.start, 90.0);
  EXPECT_FALSE(mark.end);
  EXPECT_EQ(mark.name, "Second song");
  EXPECT_EQ(parseMarkerOption("0=PERF=The Players").name, "PERF=The Players");
  EXPECT_EQ(parseMarkerOption("5=").name, "");
  EXPECT_EQ(parseMarkerOption("5=Caf\xc3\xa9").name, "Caf\xc3\xa9");
}

TEST(MarkerOption, ThatIsNoneIsRefused) {
  EXPECT_THAT(errorOf([] { parseMarkerOption("12.5"); }), HasSubstr("give TIME=NAME"));
  EXPECT_THAT(errorOf([] { parseMarkerOption(""); }), HasSubstr("give TIME=NAME"));
  EXPECT_THAT(errorOf([] { parseMarkerOption("=Name"); }), HasSubstr("is no time"));
  EXPECT_THAT(errorOf([] { parseMarkerOption("x=Name"); }), HasSubstr("is no time"));
  EXPECT_THAT(errorOf([] { parseMarkerOption("1=two\nlines"); }), HasSubstr("line break"));
  EXPECT_THAT(errorOf([] { parseMarkerOption("1=\xff"); }), HasSubstr("not UTF-8"));
}

TEST(RegionOption, IsTwoTimesAndAName) {
  const Mark mark = parseRegionOption("0:10-1:20:37=A - B=C");
  EXPECT_DOUBLE_EQ(mark.start, 10.0);
  ASSERT_TRUE(mark.end);
  EXPECT_NEAR(*mark.end, 80.0 + 37.0 / 75.0, 1e-9);
  EXPECT_EQ(mark.name, "A - B=C");
}

TEST(RegionOption, ThatIsNoneIsRefused) {
  EXPECT_THAT(errorOf([] { parseRegionOption("1-2"); }), HasSubstr("give START-END=NAME"));
  EXPECT_THAT(errorOf([] { parseRegionOption("1=x-y"); }), HasSubstr("give START-END=NAME"));
  EXPECT_THAT(errorOf([] { parseRegionOption("2-1=x"); }), HasSubstr("does not end after"));
  EXPECT_THAT(errorOf([] { parseRegionOption("1-1=x"); }), HasSubstr("does not end after"));
  EXPECT_THAT(errorOf([] { parseRegionOption("1--2=x"); }), HasSubstr("is no time"));
  EXPECT_THAT(errorOf([] { parseRegionOption("-1-2=x"); }), HasSubstr("is no time"));
}

TEST(Options, OfAnyBytesEitherParseOrAreRefused) {
  std::mt19937 random(5);
  const std::string alphabet("0123456789.:-=x\t\n\0\xff", 19);
  int parsed = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (size_t i = random() % 12; i > 0; --i) text += alphabet[random() % alphabet.size()];
    if (errorOf([&] { parseMarkerOption(text); }).empty()) ++parsed;
    try {
      const Mark mark = parseRegionOption(text);
      ASSERT_GT(*mark.end, mark.start);
      ASSERT_GE(mark.start, 0.0);
    } catch (const Failure&) {
    }
  }
  EXPECT_GT(parsed, 10);
}

}  // namespace
}  // namespace velmor::render::test
