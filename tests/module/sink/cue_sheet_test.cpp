// The cue sheet, byte for byte.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/fake_host/system_call_script.h"
#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class CueSheet : public BoundSession, public testing::Test {
 protected:
  std::string render(int64_t frames, const Settings& settings = {}) {
    return renderTo("disc.cue", frames, settings);
  }
  std::string renderTo(const std::string& name, int64_t frames, const Settings& settings = {}) {
    Sink sink = createSink(name, settings);
    EXPECT_TRUE(sink);
    if (!sink) return {};
    sink.writeSame(frames);
    EXPECT_EQ(sink.finish(), 1);
    sink.destroy();
    return readText(file(name));
  }
  // The lines between TRACK and INDEX of a ten-second disc of one track.
  std::string tagsOfOneTrack(const std::vector<Mark>& marks) {
    host.marks = marks;
    const std::string sheet = render(10 * kSecond, {.track_mode = kOneTrack});
    const std::string before = "  TRACK 01 AUDIO\r\n";
    const size_t first = sheet.find(before) + before.size();
    return sheet.substr(first, sheet.find("    INDEX 01") - first);
  }
};

TEST_F(CueSheet, OfAPlainRenderHasOnlyItsTracks) {
  host.marks = {marker(5.0, "Two")};
  EXPECT_EQ(render(10 * kSecond),
            "FILE \"disc.bin\" BINARY\r\n"
            "  TRACK 01 AUDIO\r\n"
            "    INDEX 01 00:00:00\r\n"
            "  TRACK 02 AUDIO\r\n"
            "    TITLE \"Two\"\r\n"
            "    INDEX 01 00:05:00\r\n");
}

TEST_F(CueSheet, OfAWholeAlbumReadsAsItShould) {
  host.metadata = {{"CUE:DISC_TITLE", "Night Drive"},
                   {"CUE:DISC_PERFORMER", "The Lanterns"},
                   {"CUE:DISC_CATALOG", "0731452345620"}};
  const double two = 181.5;
  // Track 2 begins on sector 13913; this far into it the third begins on sector 30019.
  const double three = two + (29868.75 - 13913) / 75;
  host.marks = {marker(0.0, "Intro"),
                marker(7.0, "perf=Ana"),
                marker(two, "Say \"Go\""),
                marker(two + 3, "ISRC=USABC0500001"),
                marker(two + 4, "ISRC=USABC0500009"),
                marker(three, "Coda")};
  fake_host::SystemCallScript calls;
  calls.swallowWritesTo(".bin");
  std::filesystem::create_directory(file("out"));
  EXPECT_EQ(
      renderTo("out/night.cue", 400 * kSecond, {.disc_leadin_ms = 2000, .track_leadin_ms = 2000}),
      sheet({"TITLE \"Night Drive\"", "PERFORMER \"The Lanterns\"", "CATALOG \"0731452345620\"",
             "FILE \"night.bin\" BINARY", "  TRACK 01 AUDIO", "    TITLE \"Intro\"",
             "    PERFORMER \"Ana\"", "    INDEX 00 00:00:00", "    INDEX 01 00:02:00",
             "  TRACK 02 AUDIO", "    TITLE \"Say 'Go'\"", "    ISRC \"USABC0500001\"",
             "    INDEX 00 03:03:37", "    INDEX 01 03:05:37", "  TRACK 03 AUDIO",
             "    TITLE \"Coda\"", "    INDEX 00 06:38:18", "    INDEX 01 06:40:18"}));
}

// Disc lines.

TEST_F(CueSheet, DiscLinesComeInTheirOwnOrder) {
  host.metadata = {{"CUE:DISC_CATALOG", "5"},      {"CUE:DISC_SONGWRITER", "4"},
                   {"CUE:DISC_PERFORMER", "3"},    {"CUE:DISC_TITLE", "2"},
                   {"CUE:DISC_REM", "1"},          {"CUE:DISC_GENRE", "not a line"},
                   {"CUE:DISC_MESSAGE", "neither"}};
  EXPECT_THAT(render(0), StartsWith("REM \"1\"\r\nTITLE \"2\"\r\nPERFORMER \"3\"\r\n"
                                    "SONGWRITER \"4\"\r\nCATALOG \"5\"\r\nFILE "));
}

TEST_F(CueSheet, DiscValuesAreWrittenAsTheyStand) {
  host.metadata = {{"CUE:DISC_TITLE", "say \"x\" \\ 100%s \xC3\xBC\t"}};
  EXPECT_THAT(render(0), StartsWith("TITLE \"say \"x\" \\ 100%s \xC3\xBC\t\"\r\nFILE"));
}

TEST_F(CueSheet, ADiscLineOverTheBufferIsCutAndLacksItsEnd) {
  for (const size_t length : {4084U, 4085U, 4086U, 4087U, 4088U, 5000U, 100000U}) {
    host.metadata = {{"CUE:DISC_TITLE", std::string(length, 'x')}};
    const std::string line = "TITLE \"" + std::string(length, 'x') + "\"\r\n";
    EXPECT_THAT(render(0), StartsWith(line.substr(0, 4095) + "FILE \"disc.bin\" BINARY\r\n"))
        << length;
  }
}

// FILE line.

TEST_F(CueSheet, NamesTheImageWithoutItsFolder) {
  std::filesystem::create_directories(file("a/b.c"));
  EXPECT_THAT(renderTo("a/b.c/name.cue", 0), StartsWith("FILE \"name.bin\" BINARY\r\n"));
}

TEST_F(CueSheet, CutsTheImagesPathAtABackslashToo) {
  EXPECT_THAT(renderTo("x\\y\\name.cue", 0), StartsWith("FILE \"name.bin\" BINARY\r\n"));
}

TEST_F(CueSheet, NamesAnImageWithoutAFolderWhole) {
  const auto former = std::filesystem::current_path();
  std::filesystem::current_path(folder.path());
  SinkConfig config = fake_host::makeConfig({});
  Sink sink(registration().CreateSink("bare.cue", &config, sizeof config, 2, 44100, false));
  std::filesystem::current_path(former);
  ASSERT_TRUE(sink);
  sink.finish();
  EXPECT_THAT(readText(file("bare.cue")), StartsWith("FILE \"bare.bin\" BINARY\r\n"));
}

// Titles.

TEST_F(CueSheet, QuotesInATrackTitleBecomeApostrophes) {
  host.marks = {marker(0.0, "\"a\" 'b' \"\"")};
  EXPECT_THAT(render(kSecond), HasSubstr("    TITLE \"'a' 'b' ''\"\r\n"));
}

TEST_F(CueSheet, ATitleOverTheBufferIsCutLikeTheOtherLines) {
  for (const size_t length : {4081U, 4082U, 4083U, 4084U, 9000U}) {
    host.marks = {marker(0.0, std::string(length, 't'))};
    const std::string line = "    TITLE \"" + std::string(length, 't') + "\"\r\n";
    EXPECT_THAT(render(kSecond), HasSubstr("  TRACK 01 AUDIO\r\n" + line.substr(0, 4095) +
                                           "    INDEX 01 00:00:00\r\n"))
        << length;
  }
}

// Tags.

TEST_F(CueSheet, TagsComeInTheOrderOfTheirMarkers) {
  EXPECT_EQ(tagsOfOneTrack(
                {marker(1.0, "ISRC=USABC0500001"), marker(2.0, "WRIT=W"), marker(3.0, "PERF=P")}),
            "    ISRC \"USABC0500001\"\r\n    SONGWRITER \"W\"\r\n    PERFORMER \"P\"\r\n");
}

TEST_F(CueSheet, TheFirstTagOfEachKindWinsInWhateverCase) {
  EXPECT_EQ(tagsOfOneTrack({marker(1.0, "PERF=A"), marker(2.0, "PERF=B"), marker(3.0, "Perf=C")}),
            "    PERFORMER \"A\"\r\n");
  EXPECT_EQ(tagsOfOneTrack({marker(1.0, "Perf=C"), marker(2.0, "PERF=B")}),
            "    PERFORMER \"C\"\r\n");
}

TEST_F(CueSheet, TagValuesAreWrittenAsTheyStand) {
  EXPECT_EQ(
      tagsOfOneTrack({marker(1.0, "PERF= \"x\" "), marker(2.0, "WRIT="), marker(3.0, "isrc=%n%s")}),
      "    PERFORMER \" \"x\" \"\r\n    SONGWRITER \"\"\r\n    ISRC \"%n%s\"\r\n");
}

TEST_F(CueSheet, RegionsCarryTagsToo) {
  EXPECT_EQ(tagsOfOneTrack({region(1.0, 2.0, "PERF=region")}), "    PERFORMER \"region\"\r\n");
}

TEST_F(CueSheet, NamesWithoutATagsPrefixAndEmptyOnesAreSkipped) {
  EXPECT_EQ(tagsOfOneTrack({marker(1.0, std::nullopt), marker(2.0, ""), marker(3.0, "PERF"),
                            marker(4.0, "#PERF=x"), marker(5.0, "plain"), marker(6.0, "PERF=y")}),
            "    PERFORMER \"y\"\r\n");
}

TEST_F(CueSheet, ATagOverTheBufferIsCut) {
  const std::string value(5000, 'p');
  EXPECT_EQ(tagsOfOneTrack({marker(1.0, "PERF=" + value)}),
            ("    PERFORMER \"" + value).substr(0, 4095));
}

TEST_F(CueSheet, ATagBelongsToTheTrackWhoseSpanHoldsIt) {
  const auto tags_of = [this](double position) {
    host.marks = {marker(10.0, "Two"), marker(position, "PERF=P")};
    if (position < 10.0) std::swap(host.marks[0], host.marks[1]);
    const std::string sheet = render(20 * kSecond);
    const size_t tag = sheet.find("PERFORMER");
    if (tag == std::string::npos) return 0;
    return tag < sheet.find("TRACK 02") ? 1 : 2;
  };
  const double bound = (0.0 - 0.001) + 10.0;
  EXPECT_EQ(tags_of(5.0), 1);
  EXPECT_EQ(tags_of(std::nextafter(bound, 0.0)), 1);
  EXPECT_EQ(tags_of(bound), 2) << "the end of one span is the beginning of the next";
  EXPECT_EQ(tags_of(10.0 - 0.0005), 2) << "half a millisecond before the track";
  EXPECT_EQ(tags_of(10.0), 2);
  EXPECT_EQ(tags_of(19.9), 2);
  EXPECT_EQ(tags_of(-0.0005), 1) << "half a millisecond before the disc";
  EXPECT_EQ(tags_of(-0.0015), 0);
  EXPECT_EQ(tags_of(20.0 - 0.0005), 0) << "the last span ends a millisecond early too";
}

TEST_F(CueSheet, ATagListedBehindTheSpansEndIsNotSeen) {
  host.marks = {marker(5.0, "Two"), marker(6.0, "PERF=two"), marker(1.0, "PERF=one")};
  const std::string sheet = render(10 * kSecond);
  EXPECT_THAT(sheet, Not(HasSubstr("\"one\"")));
  EXPECT_THAT(sheet, HasSubstr("    PERFORMER \"two\"\r\n    INDEX 01 00:05:00"));
}

TEST_F(CueSheet, EachTrackHasTagsOfItsOwn) {
  host.marks = {marker(1.0, "PERF=A"), marker(5.0, "Two"), marker(6.0, "PERF=A"),
                marker(10.0, "Three"), marker(11.0, "PERF=C")};
  EXPECT_EQ(render(15 * kSecond),
            sheet({"FILE \"disc.bin\" BINARY", "  TRACK 01 AUDIO", "    PERFORMER \"A\"",
                   "    INDEX 01 00:00:00", "  TRACK 02 AUDIO", "    TITLE \"Two\"",
                   "    PERFORMER \"A\"", "    INDEX 01 00:05:00", "  TRACK 03 AUDIO",
                   "    TITLE \"Three\"", "    PERFORMER \"C\"", "    INDEX 01 00:10:00"}));
}

TEST_F(CueSheet, SpansFollowTheStartTimeAndNotTheLeadIns) {
  Sink sink = createSink("disc.cue", {.disc_leadin_ms = 2000, .track_leadin_ms = 2000});
  sink->SetStartTime(1000.0);
  host.marks = {marker(999.0, "PERF=before"), marker(1000.0, "PERF=one"), marker(1010.0, "Two"),
                marker(1010.5, "PERF=two")};
  sink.writeSame(20 * kSecond);
  sink.finish();
  const std::string sheet = readText(file("disc.cue"));
  EXPECT_THAT(sheet, HasSubstr("    PERFORMER \"one\"\r\n    INDEX 00 00:00:00"));
  EXPECT_THAT(sheet, HasSubstr("    PERFORMER \"two\"\r\n    INDEX 00 00:12:00"));
}

TEST_F(CueSheet, TagsAreReadWithoutRegionEndsAndNumbers) {
  host.marks = {marker(1.0, "PERF=x")};
  Sink sink = createSink("disc.cue", {.track_mode = kOneTrack});
  sink.writeSame(kSecond * 2);
  host.marker_calls.clear();
  sink.finish();
  ASSERT_FALSE(host.marker_calls.empty());
  EXPECT_EQ(host.marker_calls[0].index, 0);
  for (const fake_host::MarkerCall& call : host.marker_calls) {
    EXPECT_TRUE(call.wants_position && call.wants_name);
    EXPECT_FALSE(call.wants_region_end || call.wants_number);
  }
}

// Indices.

TEST_F(CueSheet, ADiscLeadInAloneGivesTrackOneItsIndexZero) {
  host.marks = {marker(5.0, "Two")};
  EXPECT_EQ(render(10 * kSecond, {.disc_leadin_ms = 2000}),
            sheet({"FILE \"disc.bin\" BINARY", "  TRACK 01 AUDIO", "    INDEX 00 00:00:00",
                   "    INDEX 01 00:02:00", "  TRACK 02 AUDIO", "    TITLE \"Two\"",
                   "    INDEX 01 00:07:00"}));
}

TEST_F(CueSheet, IndexZeroLiesWholeSecondsBeforeIndexOne) {
  struct Case {
    int leadin;
    const char* index0;
    const char* index1;
  };
  // INDEX 00 knows whole seconds only. Both are truncated to milliseconds first, and a lead-in that
  // ends inside a frame is counted short of it: either may lie a sector before the audio.
  for (const Case& c : {Case{1000, "00:05:00", "00:06:00"}, Case{1500, "00:05:37", "00:06:37"},
                        Case{2500, "00:05:37", "00:07:37"}, Case{1999, "00:05:74", "00:06:74"},
                        Case{999, "00:05:74", "00:05:74"}, Case{1, "00:05:00", "00:05:00"}}) {
    host.marks = {marker(5.0, "Two")};
    EXPECT_THAT(render(10 * kSecond, {.track_leadin_ms = c.leadin}),
                EndsWith("    INDEX 00 " + std::string(c.index0) + "\r\n    INDEX 01 " +
                         std::string(c.index1) + "\r\n"))
        << c.leadin;
  }
}

TEST_F(CueSheet, TimesAreTruncatedToMillisecondsAndThenToFrames) {
  struct Case {
    double marker;
    const char* index;
  };
  for (const Case& c :
       {Case{59.9999, "00:59:74"}, Case{5.0, "00:05:00"}, Case{60.0, "01:00:00"},
        Case{5.5, "00:05:37"}, Case{5.999, "00:05:74"},
        // A sector begins at 5.01333 s: 13 ms are not yet a frame.
        Case{5.0 + 588.0 / 44100, "00:05:00"}, Case{5.0 + 618.0 / 44100, "00:05:01"}}) {
    host.marks = {marker(c.marker, "Two")};
    EXPECT_THAT(render(65 * kSecond), EndsWith("    INDEX 01 " + std::string(c.index) + "\r\n"))
        << c.marker;
  }
}

TEST_F(CueSheet, MinutesGoOnPastNinetyNine) {
  fake_host::SystemCallScript calls;
  calls.swallowWritesTo(".bin");
  EXPECT_THAT(render(0, {.disc_leadin_ms = 6000 * 1000}),
              EndsWith("    INDEX 00 00:00:00\r\n    INDEX 01 100:00:00\r\n"));
}

}  // namespace
}  // namespace sink_test
