// What a sink does when it is made: names, files, metadata, track 1's name, the disc lead-in.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <map>

#include "tests/kit/faults/system_calls.h"
#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

namespace fs = std::filesystem;
using fake_host::fileExists;
using fake_host::Session;
using fake_host::sizeOfFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// Names are taken relative to this folder while it lives.
class WorkingFolder {
 public:
  explicit WorkingFolder(const fs::path& folder) : m_former(fs::current_path()) {
    fs::current_path(folder);
  }
  ~WorkingFolder() { fs::current_path(m_former); }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

 private:
  fs::path m_former;
};

class Construction : public BoundSession, public testing::Test {
 protected:
  Sink createNamed(const char* name, const Settings& settings = {}) {
    SinkConfig config = fake_host::makeConfig(settings);
    return Sink(registration().CreateSink(name, &config, sizeof config, 2, 44100, false));
  }
  std::string sheetOf(const Settings& settings) {
    Sink sink = createSink("disc.cue", settings);
    EXPECT_TRUE(sink);
    if (!sink) return {};
    sink.finish();
    sink.destroy();
    return readText(file("disc.cue"));
  }
  // The title line of track 1 in the sheet of a render without audio.
  std::string firstTitle(const Settings& settings = {}) {
    const std::string sheet = sheetOf(settings);
    const size_t title = sheet.find("    TITLE \"");
    return title == std::string::npos ? "none"
                                      : sheet.substr(title, sheet.find('\r', title) - title);
  }
};

struct Names {
  const char* given;
  const char* told;   // by GetFileName
  const char* sheet;  // the file that becomes the sheet
  const char* image;
};

class FileNames : public BoundSession, public testing::TestWithParam<Names> {};

TEST_P(FileNames, SheetAndImageLieSideBySide) {
  const WorkingFolder in(folder.path());
  fs::create_directory("a.b");
  SinkConfig config = fake_host::makeConfig({});
  Sink sink(registration().CreateSink(GetParam().given, &config, sizeof config, 2, 44100, false));
  ASSERT_TRUE(sink);
  EXPECT_STREQ(sink->GetFileName(), GetParam().told);
  sink.writeSignal(588);
  sink.finish();
  sink.destroy();
  EXPECT_THAT(
      readText(GetParam().sheet),
      HasSubstr("FILE \"" + fs::path(GetParam().image).filename().string() + "\" BINARY\r\n"));
  EXPECT_EQ(sizeOfFile(GetParam().image), 2352);
  size_t files = 0;
  for (const auto& entry : fs::recursive_directory_iterator(".")) files += entry.is_regular_file();
  EXPECT_EQ(files, 2U);
}

INSTANTIATE_TEST_SUITE_P(
    Names, FileNames,
    testing::Values(Names{"song.cue", "song.cue", "song.cue", "song.bin"},
                    Names{"song.CUE", "song.CUE", "song.CUE", "song.bin"},
                    Names{"x.CuE", "x.CuE", "x.CuE", "x.bin"},
                    Names{"a.b/track.cue", "a.b/track.cue", "a.b/track.cue", "a.b/track.bin"},
                    Names{"one.two.cue", "one.two.cue", "one.two.cue", "one.two.bin"},
                    // Without the ending the sheet is written to the very name that was given.
                    Names{"songs", "songs.cue", "songs", "songs.bin"},
                    Names{"abc", "abc.cue", "abc", "abc.bin"},
                    Names{"a.b/tracks", "a.b/tracks.cue", "a.b/tracks", "a.b/tracks.bin"},
                    Names{"song.cue.wav", "song.cue.wav.cue", "song.cue.wav", "song.cue.wav.bin"},
                    Names{"songcue", "songcue.cue", "songcue", "songcue.bin"},
                    // Four characters are taken for a name with its ending, whatever they are.
                    Names{".cue", ".cue", ".cue", ".bin"}, Names{"a.cd", "a.cd", "a.cd", "a.bin"},
                    Names{"./ab", "./ab", "ab", ".bin"}));

TEST_F(Construction, FourCharactersWithoutADotMakeNoSink) {
  const WorkingFolder in(folder.path());
  EXPECT_FALSE(createNamed("abcd"));
  EXPECT_FALSE(createNamed("song"));
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(Construction, NoNameMakesNoSink) {
  const WorkingFolder in(folder.path());
  EXPECT_FALSE(createNamed(nullptr));
  EXPECT_FALSE(createNamed(""));
  EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(Construction, AMissingFolderMakesNoSink) {
  const int before = fake_host::openDescriptors();
  EXPECT_FALSE(createSink("missing/disc.cue"));
  EXPECT_EQ(fake_host::openDescriptors(), before);
  EXPECT_FALSE(fileExists(file("missing")));
}

TEST_F(Construction, AnImageThatCannotBeOpenedMakesNoSink) {
  fs::create_directory(file("disc.bin"));
  const int before = fake_host::openDescriptors();
  EXPECT_FALSE(createSink("disc.cue"));
  EXPECT_EQ(fake_host::openDescriptors(), before);
}

TEST_F(Construction, ASheetThatCannotBeOpenedLeavesTheImageAlone) {
  fs::create_directory(file("disc.cue"));
  fake_host::writeText(file("disc.bin"), "yesterday's image");
  EXPECT_FALSE(createSink("disc.cue"));
  EXPECT_EQ(readText(file("disc.bin")), "yesterday's image");
}

TEST_F(Construction, WhatLayThereBeforeIsEmptied) {
  fake_host::writeText(file("disc.cue"), "an old sheet");
  fake_host::writeText(file("disc.bin"), "an old image");
  Sink sink = createSink("disc.cue");
  ASSERT_TRUE(sink);
  EXPECT_EQ(sizeOfFile(file("disc.cue")), 0);
  EXPECT_EQ(sizeOfFile(file("disc.bin")), 0);
}

TEST_F(Construction, BothFilesAreHeldAgainstOtherWriters) {
  Sink sink = createSink("disc.cue");
  ASSERT_TRUE(sink);
  sink.writeSignal(588);
  EXPECT_FALSE(createSink("disc.cue"));
  for (const char* name : {"disc.cue", "disc.bin"}) {
    const int fd = open(file(name).c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(flock(fd, LOCK_EX | LOCK_NB), -1) << name;
    close(fd);
  }
  EXPECT_EQ(sink.finish(), 1);
  EXPECT_EQ(sizeOfFile(file("disc.bin")), 2352);
  EXPECT_TRUE(createSink("disc.cue")) << "free again after the finish";
}

TEST_F(Construction, ALockedFileKeepsItsContents) {
  for (const char* name : {"disc.cue", "disc.bin"}) {
    fake_host::writeText(file(name), "held");
    const int fd = open(file(name).c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(fd, LOCK_EX | LOCK_NB), 0);
    EXPECT_FALSE(createSink("disc.cue")) << name;
    close(fd);
    EXPECT_EQ(readText(file(name)), "held");
    fs::remove(file(name));
  }
}

TEST_F(Construction, TheHostsFormatIsOfNoConsequence) {
  SinkConfig config = fake_host::makeConfig({});
  Sink sink(
      registration().CreateSink(file("disc.cue").c_str(), &config, sizeof config, 6, 96000, true));
  ASSERT_TRUE(sink);
  EXPECT_EQ(sink->GetNumChannels(), 2);
  sink.writeSignal(44100);
  EXPECT_EQ(sink->GetLength(), 1.0);
}

TEST_F(Construction, AShortBlobIsIgnoredWhole) {
  SinkConfig config = fake_host::makeConfig({.disc_leadin_ms = 1000, .track_mode = 2});
  for (const int length : {4, 8, 16, 23}) {
    host.marks = {marker(0.0, "one")};
    Sink sink(
        registration().CreateSink(file("disc.cue").c_str(), &config, length, 2, 44100, false));
    ASSERT_TRUE(sink);
    EXPECT_EQ(sink->GetLength(), 0.0) << length;
    sink.finish();
    sink.destroy();
    EXPECT_THAT(readText(file("disc.cue")), HasSubstr("TITLE \"one\"")) << "markers mode";
  }
}

// Track 1's name.

TEST_F(Construction, AMarkerExactlyFourSecondsAfterTheStartNamesTrackOne) {
  host.marks = {marker(4.0, "Four")};
  EXPECT_EQ(firstTitle(), "    TITLE \"Four\"");
}

TEST_F(Construction, AMarkerPastFourSecondsLeavesTrackOneUnnamed) {
  host.marks = {marker(4.0001, "Late")};
  EXPECT_EQ(firstTitle(), "none");
}

TEST_F(Construction, AMarkerAtTheStartNamesTrackOne) {
  host.marks = {marker(0.0, "Zero")};
  EXPECT_EQ(firstTitle(), "    TITLE \"Zero\"");
}

TEST_F(Construction, AMarkerBeforeTheStartIsPassedOver) {
  host.marks = {marker(-0.5, "Before"), marker(1.0, "After")};
  EXPECT_EQ(firstTitle(), "    TITLE \"After\"");
}

TEST_F(Construction, TheFirstMarkerThatCountsDecidesWhateverFollows) {
  host.marks = {marker(4.5, "Late"), marker(1.0, "Early")};
  EXPECT_EQ(firstTitle(), "none");
  host.marks = {marker(1.0, std::nullopt), marker(2.0, "Second")};
  EXPECT_EQ(firstTitle(), "none") << "a marker without a name decides too";
  host.marks = {marker(1.0, ""), marker(2.0, "Second")};
  EXPECT_EQ(firstTitle(), "none");
  host.marks = {marker(3.0, "First"), marker(2.0, "Second")};
  EXPECT_EQ(firstTitle(), "    TITLE \"First\"");
}

TEST_F(Construction, RegionsAndTagsDoNotNameTrackOne) {
  host.marks = {region(0.0, 9.0, "region"), marker(0.5, "PERF=p"), marker(0.6, "writ=w"),
                marker(0.7, "Isrc=i"), marker(1.0, "Title")};
  EXPECT_EQ(firstTitle(), "    TITLE \"Title\"");
}

TEST_F(Construction, ANameThatOnlyResemblesATagIsAName) {
  for (const char* name : {"PERF", "PERF =x", " PERF=x", "ISR=x", "WRITE=x"}) {
    host.marks = {marker(1.0, name)};
    EXPECT_EQ(firstTitle(), "    TITLE \"" + std::string(name) + "\"");
  }
}

TEST_F(Construction, WithHashMarkersOnlyTheOthersArePassedOver) {
  host.marks = {marker(0.5, "plain"), marker(0.6, std::nullopt), marker(0.7, ""),
                marker(1.0, "#Real")};
  EXPECT_EQ(firstTitle({.hash_markers_only = 1}), "    TITLE \"Real\"");
}

TEST_F(Construction, WithHashMarkersOnlyATagBehindTheHashIsAName) {
  host.marks = {marker(1.0, "#PERF=x")};
  EXPECT_EQ(firstTitle({.hash_markers_only = 1}), "    TITLE \"PERF=x\"");
}

TEST_F(Construction, AnyNonZeroHashFlagCounts) {
  host.marks = {marker(0.5, "plain"), marker(1.0, "#Real")};
  EXPECT_EQ(firstTitle({.hash_markers_only = 2}), "    TITLE \"Real\"");
  EXPECT_EQ(firstTitle({.hash_markers_only = -1}), "    TITLE \"Real\"");
}

TEST_F(Construction, WithoutTheHashOptionTheHashStays) {
  host.marks = {marker(1.0, "#Real")};
  EXPECT_EQ(firstTitle(), "    TITLE \"#Real\"");
}

TEST_F(Construction, TrackOneIsNamedInMarkersModeOnly) {
  host.marks = {marker(1.0, "Name")};
  for (const int mode : {1, 2, 3, -1}) EXPECT_EQ(firstTitle({.track_mode = mode}), "none") << mode;
}

TEST_F(Construction, NamingTrackOneReadsTheMarkersWithTheirEndsAndWithoutTheirNumbers) {
  host.marks = {marker(5.0, "x")};
  Sink sink = createSink("disc.cue");
  ASSERT_EQ(host.marker_calls.size(), 1U);
  const fake_host::MarkerCall& call = host.marker_calls[0];
  EXPECT_EQ(call.index, 0);
  EXPECT_TRUE(call.wants_region_flag && call.wants_position && call.wants_region_end &&
              call.wants_name);
  EXPECT_FALSE(call.wants_number);
}

// The disc lead-in.

TEST_F(Construction, TwoSecondsOfDiscLeadInAreExactlyAHundredAndFiftySectors) {
  Sink sink = createSink("disc.cue", {.disc_leadin_ms = 2000});
  ASSERT_TRUE(sink);
  EXPECT_EQ(sink->GetLength(), 2.0);
  sink.writeSignal(588);
  sink.finish();
  expectImage(file("disc.bin"), Image().silence(88200).signal(0, 588));
  EXPECT_THAT(readText(file("disc.cue")),
              HasSubstr("INDEX 00 00:00:00\r\n    INDEX 01 00:02:00\r\n"));
}

TEST_F(Construction, HalfASecondOfDiscLeadInIsPaddedToASector) {
  Sink sink = createSink("disc.cue", {.disc_leadin_ms = 500});
  ASSERT_TRUE(sink);
  EXPECT_EQ(sink->GetLength(), 22344 / 44100.0);
  sink.writeSignal(588);
  sink.finish();
  expectImage(file("disc.bin"), Image().silence(22344).signal(0, 588));
  EXPECT_THAT(readText(file("disc.cue")), HasSubstr("    INDEX 01 00:00:37\r\n"))
      << "the asked length, not the padded one";
}

TEST_F(Construction, ALeadInThatEndsInsideAFrameIsCountedInWholeFrames) {
  // 7 ms are 1234 bytes: 308 whole frames, and 279 more pad the sector.
  Sink sink = createSink("disc.cue", {.disc_leadin_ms = 7});
  ASSERT_TRUE(sink);
  EXPECT_EQ(sink->GetLength(), 587 / 44100.0);
  sink.destroy();
  EXPECT_EQ(sizeOfFile(file("disc.bin")), 2352);
}

TEST_F(Construction, ANegativeLeadInIsNone) {
  Sink sink = createSink("disc.cue", {.disc_leadin_ms = -2000, .track_leadin_ms = -1});
  ASSERT_TRUE(sink);
  EXPECT_EQ(sink->GetLength(), 0.0);
  sink.finish();
  EXPECT_THAT(readText(file("disc.cue")), Not(HasSubstr("INDEX 00")));
}

TEST_F(Construction, TheTrackLeadInIsNotPutBeforeTrackOne) {
  Sink sink = createSink("disc.cue", {.track_leadin_ms = 2000});
  ASSERT_TRUE(sink);
  EXPECT_EQ(sink->GetLength(), 0.0);
}

// Disc metadata.

TEST_F(Construction, MetadataIsAskedForOnceFromZeroToTheEnd) {
  host.metadata = {{"CUE:DISC_TITLE", "t"}, {"OTHER", "x"}};
  Sink sink = createSink("disc.cue");
  EXPECT_THAT(host.metadata_calls, ElementsAre(0, 1, 2));
  sink.finish();
  EXPECT_EQ(host.metadata_calls.size(), 3U);
}

TEST_F(Construction, MetadataIsTakenByItsPrefixLetterByLetter) {
  host.metadata = {{"cue:disc_title", "lower"},
                   {"CUE:DISC_PERFORMER", "upper"},
                   {"CUE:DISC", "x"},
                   {"XCUE:DISC_TITLE", "x"},
                   {"TITLE", "x"}};
  EXPECT_EQ(sheetOf({}), sheet({"PERFORMER \"upper\"", "FILE \"disc.bin\" BINARY",
                                "  TRACK 01 AUDIO", "    INDEX 01 00:00:00"}));
}

TEST_F(Construction, OfKeysThatDifferInCaseOneSurvives) {
  host.metadata = {{"CUE:DISC_TITLE", "A"}, {"CUE:DISC_title", "B"}, {"CUE:DISC_Title", "C"}};
  const std::string sheet = sheetOf({});
  EXPECT_THAT(sheet, testing::MatchesRegex("TITLE \"[ABC]\"\r\nFILE.*"));
  EXPECT_EQ(sheet.find("TITLE"), sheet.rfind("TITLE"));
}

TEST_F(Construction, AKeyInAnotherCaseIsFound) {
  host.metadata = {{"CUE:DISC_catalog", "0731452345620"}};
  EXPECT_THAT(sheetOf({}), testing::StartsWith("CATALOG \"0731452345620\"\r\n"));
}

TEST_F(Construction, EntriesWithoutAKeyOrAValueAreLeftOut) {
  host.metadata = {{std::nullopt, "x"},
                   {"", "x"},
                   {"CUE:DISC_TITLE", ""},
                   {"CUE:DISC_", "x"},
                   {"CUE:DISC_SONGWRITER", "w"}};
  EXPECT_THAT(sheetOf({}), testing::StartsWith("SONGWRITER \"w\"\r\nFILE"));
}

TEST_F(Construction, AnEmptyValueDoesNotTakeThePlaceOfAnotherWithItsKey) {
  host.metadata = {{"CUE:DISC_TITLE", ""}, {"CUE:DISC_Title", "Night Drive"}};
  EXPECT_THAT(sheetOf({}), testing::StartsWith("TITLE \"Night Drive\"\r\nFILE"));
}

TEST(ConstructionWithoutMetadata, TheSheetHasNoDiscLines) {
  Session session;
  session.host.withhold("EnumCurrentSinkMetadata");
  session.host.metadata = {{"CUE:DISC_TITLE", "t"}};
  session.load();
  ASSERT_EQ(session.bind(), 1);
  Sink sink = session.createSink("disc.cue");
  ASSERT_TRUE(sink);
  sink.finish();
  EXPECT_THAT(readText(session.file("disc.cue")), testing::StartsWith("FILE \"disc.bin\" BINARY"));
}

TEST_F(Construction, EveryListAndEveryShortSilenceTakesAPage) {
  host.metadata = {{"CUE:DISC_TITLE", "t"}};
  host.marks = {marker(5.0, "x")};
  test_kit::SystemCalls calls;
  Sink sink = createSink("disc.cue", {.disc_leadin_ms = 10});
  sink.writeSignal(6 * kSecond, {.lengths = {588}});
  std::map<int64_t, int> blocks;
  for (const test_kit::CallRecord& call : calls.records(test_kit::Call::kRealloc)) {
    ++blocks[call.size];
  }
  // Starts, titles, positions and lengths of the tracks, the metadata, the block's samples, the
  // lead-in and its padding.
  EXPECT_EQ(blocks[4096 - 96], 8);
}

TEST_F(Construction, TheStartTimeIsZeroUntilTheHostSetsIt) {
  Sink sink = createSink("disc.cue");
  ASSERT_TRUE(sink);
  EXPECT_EQ(sink->GetStartTime(), 0.0);
  sink->SetStartTime(-12.25);
  EXPECT_EQ(sink->GetStartTime(), -12.25);
}

}  // namespace
}  // namespace sink_test
