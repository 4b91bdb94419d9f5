// The model against discs worked out by hand.
#include "tests/module/model/reference_model.h"

#include <gtest/gtest.h>

namespace model {
namespace {

SinkConfig config(int disc_leadin_ms, int track_leadin_ms, int mode = kTracksFromMarkers,
                  int hash_only = 0) {
  return {
      static_cast<int32_t>(kIsoFormatCode), disc_leadin_ms, track_leadin_ms, 0, mode, hash_only};
}

ProjectEntry marker(double position, const char* name) {
  return {false, position, 0.0, name};
}
ProjectEntry region(double position, double end, const char* name) {
  return {true, position, end, name};
}

/// A render of a constant of 0.5 in blocks of one second.
ReferenceDisc render(const Project& project, const SinkConfig& config, int seconds) {
  ReferenceDisc disc(project, config, "/music/night.bin");
  const std::vector<double> second(44100, 0.5);
  const double* channels[] = {second.data(), second.data()};
  for (int i = 0; i < seconds; ++i) disc.writeBlock(channels, 44100, 2, 0, 1);
  disc.finish();
  return disc;
}

/// Index of the first byte that is not silence, from `from` on.
size_t firstSound(const ReferenceDisc& disc, size_t from = 0) {
  while (from < disc.image().size() && disc.image()[from] == 0) ++from;
  return from - from % 4;
}

TEST(Model, PadsALeadInToTheSector) {
  EXPECT_EQ(firstSound(render({}, config(2000, 0), 1)), 352800u);
  EXPECT_EQ(firstSound(render({}, config(500, 0), 1)), 22344u * 4);
  EXPECT_EQ(render({}, config(500, 0), 1).sheet().body,
            "FILE \"night.bin\" BINARY\r\n"
            "  TRACK 01 AUDIO\r\n"
            "    INDEX 00 00:00:00\r\n"
            "    INDEX 01 00:00:37\r\n");
}

TEST(Model, CutsAtAMarkerWithALeadIn) {
  const Project project{{marker(0.0, "One"), marker(10.0, "Two")}, {}};
  const ReferenceDisc disc = render(project, config(0, 2000), 12);
  EXPECT_EQ(disc.image().size(), 14u * 176400);
  EXPECT_EQ(disc.image()[441000 * 4 - 1], 0x40);
  EXPECT_EQ(disc.image()[441000 * 4 + 1], 0);
  EXPECT_EQ(firstSound(disc, 441000 * 4), 441000u * 4 + 352800);
  EXPECT_EQ(disc.sheet().body,
            "FILE \"night.bin\" BINARY\r\n"
            "  TRACK 01 AUDIO\r\n"
            "    TITLE \"One\"\r\n"
            "    INDEX 01 00:00:00\r\n"
            "  TRACK 02 AUDIO\r\n"
            "    TITLE \"Two\"\r\n"
            "    INDEX 00 00:10:00\r\n"
            "    INDEX 01 00:12:00\r\n");
}

TEST(Model, WritesTagsTitlesAndDiscLines) {
  const Project project{
      {marker(0.0, "Intro"), marker(1.0, "perf=Ana"), marker(6.0, "Say \"Go\""),
       marker(7.0, "ISRC=USABC0500001"), marker(7.5, "ISRC=USABC0500009"), marker(12.0, "Coda")},
      {{"CUE:DISC_CATALOG", "0731452345620"}, {"CUE:DISC_TITLE", "Night Drive"}}};
  const ReferenceDisc disc = render(project, config(2000, 2000), 18);
  ASSERT_EQ(disc.sheet().disc_lines.size(), 2u);
  EXPECT_EQ(disc.sheet().disc_lines[0], std::vector<std::string>{"TITLE \"Night Drive\"\r\n"});
  EXPECT_EQ(disc.sheet().disc_lines[1], std::vector<std::string>{"CATALOG \"0731452345620\"\r\n"});
  EXPECT_EQ(disc.sheet().body,
            "FILE \"night.bin\" BINARY\r\n"
            "  TRACK 01 AUDIO\r\n"
            "    TITLE \"Intro\"\r\n"
            "    PERFORMER \"Ana\"\r\n"
            "    INDEX 00 00:00:00\r\n"
            "    INDEX 01 00:02:00\r\n"
            "  TRACK 02 AUDIO\r\n"
            "    TITLE \"Say 'Go'\"\r\n"
            "    ISRC \"USABC0500001\"\r\n"
            "    INDEX 00 00:08:00\r\n"
            "    INDEX 01 00:10:00\r\n"
            "  TRACK 03 AUDIO\r\n"
            "    TITLE \"Coda\"\r\n"
            "    INDEX 00 00:16:00\r\n"
            "    INDEX 01 00:18:00\r\n");
}

TEST(Model, DropsMarkersUnderFourSecondsAfterATrack) {
  const Project project{{marker(3.0, "a"), marker(5.0, "b"), marker(7.0, "c"), marker(9.0, "d")},
                        {}};
  EXPECT_EQ(render(project, config(0, 0), 10).trackCount(), 3u);
}

TEST(Model, KeepsOnlyRegions) {
  const Project apart{{region(2.0, 6.0, "a"), region(8.0, 20.0, "b")}, {}};
  const ReferenceDisc two = render(apart, config(0, 0, kTracksFromRegions), 21);
  EXPECT_EQ(two.image().size(), 16u * 176400);
  EXPECT_NE(two.sheet().body.find("  TRACK 02 AUDIO\r\n    TITLE \"b\"\r\n    INDEX 01 00:04:00"),
            std::string::npos);
  const Project close{{region(2.0, 4.0, "a"), region(5.0, 10.0, "b")}, {}};
  EXPECT_EQ(render(close, config(0, 0, kTracksFromRegions), 11).trackCount(), 1u);
}

TEST(Model, TakesHashMarkersWithoutTheHash) {
  const Project project{
      {marker(0.0, "x"), marker(0.5, "#One"), marker(5.0, "y"), marker(6.0, "#PERF=Two")}, {}};
  const std::string sheet = render(project, config(0, 0, 0, 1), 8).sheet().body;
  EXPECT_NE(sheet.find("TITLE \"One\""), std::string::npos);
  EXPECT_NE(sheet.find("  TRACK 02 AUDIO\r\n    TITLE \"PERF=Two\"\r\n    INDEX 01 00:06:00"),
            std::string::npos);
}

TEST(Model, NamesTheFilesAsAskedFor) {
  EXPECT_EQ(outputPathsFor("song.CUE")->image, "song.bin");
  EXPECT_EQ(outputPathsFor("song.CUE")->reported_sheet, "song.CUE");
  EXPECT_EQ(outputPathsFor("track")->image, "track.bin");
  EXPECT_EQ(outputPathsFor("track")->reported_sheet, "track.cue");
  EXPECT_EQ(outputPathsFor("a.b/track.cue")->image, "a.b/track.bin");
  EXPECT_EQ(outputPathsFor("a.cd")->image, "a.bin");
  EXPECT_FALSE(outputPathsFor("abcd"));
}

TEST(Model, AcceptsAnyOfSeveralValuesOfAKey) {
  CueSheet sheet{{{"TITLE \"a\"\r\n", "TITLE \"b\"\r\n"}}, "FILE\r\n"};
  EXPECT_EQ(differenceFromSheet(sheet, "TITLE \"b\"\r\nFILE\r\n"), "");
  EXPECT_NE(differenceFromSheet(sheet, "TITLE \"c\"\r\nFILE\r\n"), "");
  EXPECT_NE(differenceFromSheet(sheet, "FILE\r\n"), "");
  EXPECT_NE(differenceFromSheet(sheet, "TITLE \"a\"\r\nFILE\r\n "), "");
}

}  // namespace
}  // namespace model
