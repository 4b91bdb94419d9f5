// What is said before the render, without stopping it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/render/program/program.h"

namespace render_test {
namespace {

using testing::HasSubstr;

struct Case {
  const char* name;
  int64_t seconds;
  std::vector<std::string> options;
  const char* words;
};

class Warning : public testing::TestWithParam<Case> {};

TEST_P(Warning, IsSaidAndTheDiscIsMade) {
  const Scratch folder;
  writeSparseWav(folder / "in.wav", GetParam().seconds);
  std::vector<std::string> arguments = {folder / "in.wav", "-o", folder / "disc"};
  arguments.insert(arguments.end(), GetParam().options.begin(), GetParam().options.end());
  const Ended ended = render(arguments);
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.err, HasSubstr("velmor-render: warning: "));
  EXPECT_THAT(ended.err, HasSubstr(GetParam().words));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Warning,
    testing::Values(
        Case{"short_last_track", 12, {"--marker", "10=x"}, "the last track lasts 0:02.000"},
        Case{"isrc_twice",
             12,
             {"--marker", "6=b", "--marker", "1=ISRC=USABC2600001", "--marker",
              "7=ISRC=USABC2600001"},
             "is used twice"},
        Case{"isrc_form", 6, {"--marker", "1=ISRC=us-abc"}, "has not the form"},
        Case{"inside_a_sector", 12, {"--marker", "5.005=x"}, "track 2 starts inside a sector"},
        Case{"dropped_marker",
             12,
             {"--marker", "5=a", "--marker", "7=too close"},
             "\"too close\" (--marker) makes no track: within 4 seconds"},
        Case{"joined_region",
             12,
             {"--track-mode", "regions", "--region", "1-3=a", "--region", "4-9=b"},
             "\"b\" (--region) makes no track: the track before lasts under 4 seconds"},
        Case{"range_among_points",
             12,
             {"--marker", "5=a", "--region", "6-11=b"},
             "\"b\" (--region) makes no track: where markers make tracks, ranges do not; "
             "--track-mode regions"},
        Case{"point_among_ranges",
             12,
             {"--track-mode", "regions", "--marker", "5=a", "--region", "6-11=b"},
             "\"a\" (--marker) makes no track: where regions make tracks, points do not"},
        Case{"no_hash",
             12,
             {"--hash-markers-only", "--marker", "5=a"},
             "\"in\" (input 1) and \"a\" (--marker) make no tracks: --hash-markers-only"},
        Case{"one_track",
             12,
             {"--track-mode", "one", "--marker", "5=a"},
             "\"a\" (--marker) makes no track: --track-mode one makes a single track"},
        Case{"only_ranges", 12, {"--region", "1-6=a"}, "all marks are ranges"},
        Case{"gap_under_a_second",
             12,
             {"--marker", "6=b", "--track-leadin", "999"},
             "INDEX 00 and INDEX 01 of track 2 are the same sector"},
        Case{"start_before_the_audio",
             12,
             {"--marker", "00:06:01=b"},
             "INDEX 01 of track 2 lies one sector before the audio"},
        Case{"long_disc_title",
             6,
             {"--title",
              "0123456789012345678901234567890123456789012345678901234567890123456789"
              "01234567890"},
             "warning: the disc's title is longer than the 80 characters"},
        Case{"field_without_a_place",
             6,
             {"--meta", "CUE:DISC_LABEL=x"},
             "has no place for the field \"LABEL\""},
        Case{"long_title",
             6,
             {"--marker",
              "0=0123456789012345678901234567890123456789012345678901234567890123456789"
              "01234567890"},
             "longer than the 80 characters"}),
    [](const auto& value) { return value.param.name; });

TEST(WarningOfEncodings, NamesTheTextsOfAnInputThatWereConverted) {
  const Scratch folder;
  writeWav(folder / "a.wav", 5, 1, {"Caf\xe9", "Ana", "Caf\xe9"});
  writeWav(folder / "b.wav", 5, 2, {"Caf\xc3\xa9", "Ana", ""});
  const Ended ended = render({folder / "a.wav", folder / "b.wav", "-o", folder / "disc"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.err, "velmor-render: warning: \"Caf\xc3\xa9\" in \"" + folder / "a.wav" +
                           "\" is no UTF-8 there and is read as Windows-1252; look whether it is "
                           "right\n");
}

}  // namespace
}  // namespace render_test
