// Label tracks of the audio editor, old and new, whole and damaged.
#include "host/render/input/marks/label_track.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "tests/host/render/input/sound_files.h"

namespace velmor::render::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(LabelTrack, HasPointsAndRegions) {
  const LabelTrack track =
      parseLabelTrack("0.000000\t0.000000\tFirst\n12.5\t20.25\tA region\n30\t30\t\n");
  EXPECT_TRUE(track.warnings.empty());
  ASSERT_EQ(track.marks.size(), 3U);
  EXPECT_EQ(track.marks[0].name, "First");
  EXPECT_FALSE(track.marks[0].end);
  EXPECT_DOUBLE_EQ(track.marks[1].start, 12.5);
  ASSERT_TRUE(track.marks[1].end);
  EXPECT_DOUBLE_EQ(*track.marks[1].end, 20.25);
  EXPECT_EQ(track.marks[2].name, "");
}

TEST(LabelTrack, KeepsTheOrderOfItsLines) {
  const LabelTrack track = parseLabelTrack("9\t9\tlate\n1\t1\tearly\n");
  ASSERT_EQ(track.marks.size(), 2U);
  EXPECT_EQ(track.marks[0].name, "late");
}

TEST(LabelTrack, MayHaveByteOrderMarkAnyLineEndsAndDecimalCommas) {
  for (const char* text : {"\xef\xbb\xbf"
                           "1,5\t1,5\tOne\r\n2,5\t3,0\tTwo\r\n",
                           "1.5\t1.5\tOne\r2.5\t3.0\tTwo\r", "1.5\t1.5\tOne\n2.5\t3.0\tTwo"}) {
    const LabelTrack track = parseLabelTrack(text);
    EXPECT_TRUE(track.warnings.empty()) << text;
    ASSERT_EQ(track.marks.size(), 2U) << text;
    EXPECT_DOUBLE_EQ(track.marks[0].start, 1.5);
    EXPECT_EQ(track.marks[0].name, "One");
    EXPECT_DOUBLE_EQ(track.marks[1].end.value_or(0.0), 3.0);
  }
}

TEST(LabelTrack, SkipsFrequenciesAndEmptyLines) {
  const LabelTrack track = parseLabelTrack("1\t2\tOne\n\\\t100.0\t2000.0\n\n   \n3\t3\tTwo\n");
  EXPECT_TRUE(track.warnings.empty());
  ASSERT_EQ(track.marks.size(), 2U);
}

TEST(LabelTrack, OfTheOldKindHasNoEnds) {
  const LabelTrack track = parseLabelTrack("1.5\tOne\n7\t2 for the road\n8\t3\n");
  EXPECT_TRUE(track.warnings.empty());
  ASSERT_EQ(track.marks.size(), 3U);
  EXPECT_EQ(track.marks[0].name, "One");
  EXPECT_FALSE(track.marks[0].end);
  EXPECT_EQ(track.marks[1].name, "2 for the road");
  EXPECT_EQ(track.marks[2].name, "3") << "too early to be an end";
}

TEST(LabelTrack, WarnsOfEachLineItCannotUseByNumber) {
  const LabelTrack track = parseLabelTrack(
      "1\t1\tgood\nnonsense\n-1\t2\tbefore the start\n5\t4\tbackwards\nnan\tinf\tx\n6\tx\ty\n7\n"
      "1:30\t2\tminutes\n9\t9\tgood too");
  ASSERT_EQ(track.marks.size(), 2U);
  EXPECT_EQ(track.marks[1].name, "good too");
  EXPECT_THAT(track.warnings, ElementsAre(HasSubstr("line 2 "), HasSubstr("line 3 "),
                                          HasSubstr("line 4 of the labels ends before it starts"),
                                          HasSubstr("line 5 "), HasSubstr("line 6 "),
                                          HasSubstr("line 7 "), HasSubstr("line 8 ")));
}

TEST(LabelTrack, WarnsOfANameThatIsNotUtf8AndReadsItAsWindows1252) {
  const LabelTrack track = parseLabelTrack("1\t1\tCaf\xe9\n");
  ASSERT_EQ(track.marks.size(), 1U);
  EXPECT_EQ(track.marks[0].name, "Caf\xc3\xa9");
  EXPECT_THAT(track.warnings,
              ElementsAre(HasSubstr("line 1 of the labels has a name that is not")));
}

TEST(LabelTrack, InUtf16IsNamedAsSuch) {
  const LabelTrack track =
      parseLabelTrack(std::string("\xff\xfe"
                                  "1\0\t\0",
                                  6));
  EXPECT_TRUE(track.marks.empty());
  EXPECT_THAT(track.warnings, ElementsAre(HasSubstr("UTF-16; save it as UTF-8")));
}

TEST(LabelTrack, OfAnyBytesGivesUsableMarksOnly) {
  std::mt19937 random(23);
  const std::string alphabet("0123.,-:\t\t\t\n\r\\abc\0\xff\xef\xbb", 21);
  size_t marks = 0;
  for (int round = 0; round < 5000; ++round) {
    std::string text;
    for (size_t i = random() % 60; i > 0; --i) text += alphabet[random() % alphabet.size()];
    const LabelTrack track = parseLabelTrack(text);
    marks += track.marks.size();
    for (const Mark& mark : track.marks) {
      ASSERT_GE(mark.start, 0.0);
      ASSERT_TRUE(!mark.end || *mark.end > mark.start);
      ASSERT_EQ(mark.name.find('\n'), std::string::npos);
    }
  }
  EXPECT_GT(marks, 100U);
}

TEST(LabelTrack, IsReadFromAFileAndMayBeEmpty) {
  const Folder folder;
  EXPECT_EQ(readLabelTrack(folder.write("labels.txt", "1\t1\tOne\n")).marks.size(), 1U);
  const LabelTrack none = readLabelTrack(folder.write("none.txt", ""));
  EXPECT_TRUE(none.marks.empty());
  EXPECT_THAT(none.warnings, ElementsAre(HasSubstr("none.txt\" has no labels")));
}

TEST(LabelTrack, ItsWarningsNameTheFileAndTheLine) {
  const Folder folder;
  const std::string path = folder.write("labels.txt", "1\t1\tOne\nnonsense\n");
  EXPECT_EQ(readLabelTrack(path).marks[0].given_by, "line 1 of \"" + path + "\"");
  EXPECT_THAT(readLabelTrack(path).warnings,
              ElementsAre(HasSubstr("line 2 of \"" + path + "\" does not begin with a time")));
  const std::string wide = folder.write("wide.txt", "\xff\xfe");
  EXPECT_THAT(readLabelTrack(wide).warnings, ElementsAre(HasSubstr("line 1 of \"" + wide + "\"")));
}

TEST(LabelTrack, TooLargeToBeOneIsRefused) {
  const Folder folder;
  const std::string path = folder.write("film.txt", std::string((16U << 20) + 1, '1'));
  EXPECT_THAT(errorOf([&] { readLabelTrack(path); }), HasSubstr("too large for a label track"));
}

}  // namespace
}  // namespace velmor::render::test
