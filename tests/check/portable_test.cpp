// The second sheet: every installed reader takes it, and shows the disc as it truly is.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <sstream>

#include "check/check.h"
#include "check/portable/joined_image.h"
#include "check/portable/make_portable.h"
#include "check/portable/refuse_target.h"
#include "disc/failure.h"
#include "disc/portable/portable_cue.h"
#include "disc/portable/portable_disc.h"
#include "disc/portable/portable_toc.h"
#include "tests/check/bad_cases.h"
#include "tests/check/reader_process.h"
#include "tests/check/test_images.h"

namespace velmor::check::test {
namespace {

namespace fs = std::filesystem;

/// Replaces the sheet on `disk` by the second one made from it, under the image's name.
void replaceByPortable(SheetOnDisk& disk) {
  const fs::path folder = disk.folder;
  const Report report = check(folder / disk.sheet, {});
  const std::string text = cueText(makePortable(report, folder / "image.cue"));
  disk.sheet = "image.cue";
  writeFile(folder / disk.sheet, text);
}

void expectEveryReaderShows(const LoadedDisc& truth,
                            const std::function<SheetOnDisk(const fs::path&)>& prepare) {
  for (const auto& [reader, loaded] : askReaders(prepare)) {
    EXPECT_TRUE(loaded.accepted) << readerName(reader) << '\n' << loaded.output.substr(0, 2000);
    EXPECT_EQ(difference(loaded, truth), "") << readerName(reader) << '\n'
                                             << loaded.output.substr(0, 2000);
  }
}

/// What the second sheet says where it cannot say what the author meant.
LoadedDisc portableTruth(const BadCase& bad) {
  static const std::map<std::string, std::string> kSecondTitles = {
      {"quote-in-text", "Say 'Go' now"},
      {"text-too-long",
       "A long way to the sea A long way to the sea A long way to the sea A long way to"},
      {"utf8-text", "Cafe"},
      {"latin1-text", "Cafe"},
      {"line-cut", std::string(80, 'x')}};
  LoadedDisc truth = bad.truth;
  const auto title = kSecondTitles.find(bad.rule);
  if (title != kSecondTitles.end()) (*truth.titles)[1] = title->second;
  if (bad.rule == "backslash-at-end") (*truth.titles)[0] = "One";
  if (bad.rule == "isrc-twice") (*truth.isrcs)[1] = "";
  return truth;
}

bool canBeMade(const BadCase& bad) {
  return bad.rule != "minutes-over-99" && bad.rule != "too-many-tracks" &&
         bad.rule != "unknown-track-mode" && bad.rule != "quote-in-file-name" &&
         bad.rule != "index-past-end" && bad.rule != "image-not-whole-sectors";
}

class PortableSheetTest : public testing::TestWithParam<BadCase> {};

TEST_P(PortableSheetTest, IsTakenByEveryReaderWithCodesTitlesAndStartsRight) {
  const BadCase& bad = GetParam();
  if (!canBeMade(bad)) {
    if (bad.rule == "image-not-whole-sectors") return;  // the image stays as it is, and cut
    TemporaryFolder folder;
    const SheetOnDisk disk = prepare(bad, folder.path());
    const Report report = check(folder / disk.sheet, {});
    EXPECT_THROW(makePortable(report, folder / "image.cue"), Failure);
    return;
  }
  expectEveryReaderShows(portableTruth(bad), [&bad](const fs::path& folder) {
    SheetOnDisk disk = prepare(bad, folder);
    replaceByPortable(disk);
    return disk;
  });
  if (!missingReaders().empty()) GTEST_SKIP() << "not installed here:" << missingReaders();
}

std::string caseName(const testing::TestParamInfo<BadCase>& info) {
  std::string name = info.param.name.substr(4);
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c == '.' || c == '-'; }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Of, PortableSheetTest, testing::ValuesIn(badCases()), caseName);

/// A render with lead-ins: sectors 0-149 silent, then 500 of sound, 150 silent, and so on. The
/// sheet's times are truncated, so that 650 + 150 = 800 (800 mod 3 = 2) is written as 799.
struct LeadInAlbum {
  static constexpr int64_t kFirst = 150, kSecond = 800, kThird = 1301;

  static std::string sheet() {
    return "TITLE \"N\xC3\xA4"
           "chte\"\r\nPERFORMER \"The \"L\"\"\r\nCATALOG \"0731452345622\"\r\n"
           "FILE \"image.bin\" BINARY\r\n"
           "  TRACK 01 AUDIO\r\n    TITLE \"Intro\"\r\n    PERFORMER \"Ana\"\r\n"
           "    INDEX 00 00:00:00\r\n    INDEX 01 00:02:00\r\n"
           "  TRACK 02 AUDIO\r\n    TITLE \"Say 'Go'\"\r\n    ISRC \"USABC0500002\"\r\n"
           "    INDEX 00 00:08:49\r\n    INDEX 01 00:10:49\r\n"
           "  TRACK 03 AUDIO\r\n    INDEX 00 00:15:25\r\n    INDEX 01 00:17:25\r\n";
  }

  static void write(const fs::path& folder) {
    TestImage image(1800);
    image.silence(0, kFirst * 588).silence((kSecond - 150) * 588, kSecond * 588);
    image.silence((kThird - 150) * 588, kThird * 588);
    image.fadeIn(kFirst * 588).fadeIn(kSecond * 588).fadeIn(kThird * 588);
    image.write(folder / "image.bin");
    writeFile(folder / "image.cue", sheet());
  }

  static LoadedDisc truth() {
    LoadedDisc disc;
    disc.catalog = "0731452345622";
    disc.titles = {"Intro", "Say 'Go'", "Track 3"};
    disc.isrcs = {"", "USABC0500002", ""};
    disc.starts = {kFirst, kSecond, kThird};
    disc.gap_starts = {0, kSecond - 150, kThird - 150};
    return disc;
  }
};

TEST(PortableSheet, OfARenderWithLeadInsNamesTheSectorsWhereTheTitlesTrulyStart) {
  expectEveryReaderShows(LeadInAlbum::truth(), [](const fs::path& folder) {
    LeadInAlbum::write(folder);
    SheetOnDisk disk{folder.string(), "image.cue", "image.bin", 1800};
    replaceByPortable(disk);
    return disk;
  });
}

std::vector<int64_t> startsOf(const disc::PortableDisc& disc) {
  std::vector<int64_t> starts;
  for (const disc::PlainTrack& t : disc.tracks) starts.push_back(t.indices.back().sector);
  return starts;
}

TEST(PortableSheet, LeavesATimeAloneWhereTheImageDoesNotTellTheStart) {
  TemporaryFolder folder;
  LeadInAlbum::write(folder.path());
  TestImage image(1800);
  // Two silent sectors at the written start: the title may start in either.
  image.silence(0, 150 * 588).silence(650 * 588, 802 * 588).silence(1151 * 588, 1302 * 588);
  image.write(folder / "image.bin");
  const Report report = check(folder / "image.cue", {});
  EXPECT_EQ(startsOf(makePortable(report, folder / "p.cue")),
            (std::vector<int64_t>{150, 799, 1300 + 0}));
}

TEST(PortableSheet, LeavesExactTimesOfOtherProgramsAlone) {
  TemporaryFolder folder;
  LeadInAlbum::write(folder.path());
  std::string sheet = LeadInAlbum::sheet();
  std::erase(sheet, '\r');
  writeFile(folder / "image.cue", sheet);
  const Report report = check(folder / "image.cue", {});
  EXPECT_EQ(startsOf(makePortable(report, folder / "p.cue")),
            (std::vector<int64_t>{150, 799, 1300}));
}

TEST(PortableSheet, TakesTheStartsThatTheRenderKnows) {
  TemporaryFolder folder;
  LeadInAlbum::write(folder.path());
  const Report report = check(folder / "image.cue", {});
  const disc::PortableDisc disc =
      makePortable(report, folder / "p.cue", {{150 * 588}, {800 * 588}, {1301 * 588 + 587}});
  EXPECT_EQ(startsOf(disc), (std::vector<int64_t>{150, 800, 1301}));
}

TEST(PortableSheet, IsPlainAsciiWithBareCodesAndLinesThatEveryReaderTakes) {
  TemporaryFolder folder;
  LeadInAlbum::write(folder.path());
  const Report report = check(folder / "image.cue", {});
  const std::string text = cueText(makePortable(report, folder / "image.cue"));
  EXPECT_THAT(text, testing::StartsWith("CATALOG 0731452345622\r\nTITLE \"Nachte\"\r\n"
                                        "PERFORMER \"The 'L'\"\r\n"));
  EXPECT_THAT(text, testing::HasSubstr("\r\n    ISRC USABC0500002\r\n"));
  EXPECT_TRUE(std::all_of(text.begin(), text.end(),
                          [](char c) { return static_cast<unsigned char>(c) < 128; }));
  writeFile(folder / "image.cue", text);
  EXPECT_FALSE(check(folder / "image.cue", {}).failed(true));
}

TEST(PortableSheet, SaysEverythingThatItChanged) {
  TemporaryFolder folder;
  LeadInAlbum::write(folder.path());
  const Report report = check(folder / "image.cue", {});
  const disc::PortableDisc disc = makePortable(report, folder / "other.cue");
  EXPECT_THAT(
      disc.changes,
      testing::UnorderedElementsAre(
          "CATALOG is written without quotes.", "Disc: TITLE is written as \"Nachte\".",
          "Disc: PERFORMER is written as \"The 'L'\".", "Track 2: ISRC is written without quotes.",
          testing::StartsWith("Track 2: INDEX 01 00:10:49 is written as 00:10:50:"),
          testing::StartsWith("Track 3: INDEX 01 00:17:25 is written as 00:17:26:"),
          testing::StartsWith("Track 3: TITLE \"Track 3\" is added"),
          testing::StartsWith("Track 2: PERFORMER \"The 'L'\" is added"),
          testing::StartsWith("Track 3: PERFORMER \"The 'L'\" is added"),
          testing::StartsWith("For libcdio (cd-info) rename")));
}

TEST(PortableToc, GivesCdrdaoTheSamplesInTheRightOrder) {
  if (findProgram("cdrdao").empty()) GTEST_SKIP() << "cdrdao is not installed here";
  TemporaryFolder folder;
  LeadInAlbum::write(folder.path());
  const Report report = check(folder / "image.cue", {});
  writeFile(folder / "album.toc", tocText(makePortable(report, folder / "album.toc")));
  const ProcessResult toc = runProcess({"cdrdao", "show-toc", "album.toc"}, folder.path());
  EXPECT_EQ(toc.status, 0) << toc.all;
  EXPECT_THAT(toc.out, testing::HasSubstr("CATALOG NUMBER: 0731452345622"));
  EXPECT_THAT(toc.out, testing::HasSubstr("ISRC US ABC 05 00002"));
  EXPECT_THAT(toc.out, testing::HasSubstr("PREGAP 00:02:00(   150)"));
  EXPECT_THAT(toc.out, testing::HasSubstr("START  00:02:00(   150)"));
  EXPECT_THAT(toc.out, testing::HasSubstr("START  00:10:50(   800)"));
  EXPECT_THAT(toc.out, testing::HasSubstr("START  00:17:26(  1301)"));
  EXPECT_THAT(toc.out, testing::HasSubstr("END    00:24:00(  1800)"));
  const ProcessResult data = runProcess({"cdrdao", "show-data", "album.toc"}, folder.path());
  std::istringstream lines(data.out);
  const std::string image = readFile(folder / "image.bin");
  int64_t frames = 0, wrong = 0;
  for (std::string line; std::getline(lines, line); ++frames) {
    long frame = -1, left = 0, right = 0;
    if (std::sscanf(line.c_str(), " %ld: %ld %ld", &frame, &left, &right) != 3) break;
    int16_t truth[2];
    std::memcpy(truth, image.data() + frames * 4, 4);
    if (frame != frames || left != truth[0] || right != truth[1]) ++wrong;
  }
  EXPECT_EQ(frames, 1800 * 588);
  EXPECT_EQ(wrong, 0);
}

class TocNames : public testing::Test {
 protected:
  /// The TOC for a disc of one image of that name and type.
  std::string tocOf(const std::string& image, const std::string& type) {
    const TestImage sound(1500);
    const std::string header = type == "WAVE" ? wavHeader(sound.bytes().size()) : "";
    writeFile(m_folder / image, header + sound.bytes());
    writeFile(m_folder / "image.cue", "FILE \"" + image + "\" " + type +
                                          "\nTRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 AUDIO\n"
                                          "INDEX 01 00:08:00\n");
    return tocText(makePortable(check(m_folder / "image.cue", {}), m_folder / "image.toc"));
  }

  TemporaryFolder m_folder;
};

TEST_F(TocNames, AreSaidSoThatCdrdaoFindsTheImage) {
  EXPECT_THAT(tocOf("a.WAV", "WAVE"), testing::HasSubstr("FILE \"a.WAV\" 00:00:00"));
  writeFile(m_folder / "image.toc", tocOf("im\\101.bin", "BINARY"));
  if (findProgram("cdrdao").empty()) GTEST_SKIP() << "cdrdao is not installed here";
  const ProcessResult toc = runProcess({"cdrdao", "show-toc", "image.toc"}, m_folder.path());
  EXPECT_THAT(toc.out, testing::HasSubstr("END    00:20:00(  1500)")) << toc.all;
}

TEST_F(TocNames, AreRefusedWhereCdrdaoWouldPlayTheHeaderAsSound) {
  EXPECT_THROW(tocOf("wave.dat", "WAVE"), Failure);
  disc::PortableDisc disc;
  disc.files = {{"a.aiff", "AIFF"}};
  disc.tracks.emplace_back().mode = "AUDIO";
  disc.tracks.back().indices.push_back({1, 0, 0});
  EXPECT_THROW(tocText(disc), Failure);
}

TEST(PortableSheet, TellsOfAUpcWhoseCheckDigitIsWrong) {
  TemporaryFolder folder;
  TestImage(1500).write(folder / "image.bin");
  const auto changes_with = [&folder](const std::string& catalog) {
    writeFile(folder / "image.cue", "CATALOG " + catalog +
                                        "\nFILE \"image.bin\" BINARY\nTRACK 01 AUDIO\n"
                                        "INDEX 01 00:00:00\n");
    const disc::PortableDisc disc =
        makePortable(check(folder / "image.cue", {}), folder / "image.cue");
    EXPECT_EQ(disc.catalog, '0' + catalog);
    return disc.changes;
  };
  EXPECT_THAT(changes_with("731452345622"), testing::SizeIs(1));
  EXPECT_THAT(changes_with("731452345628"),
              testing::ElementsAre(testing::HasSubstr("takes a leading 0"),
                                   testing::HasSubstr("wrong check digit")));
}

/// What the sheet becomes beside a sound "image.bin".
disc::PortableDisc portableOf(const std::string& sheet) {
  TemporaryFolder folder;
  TestImage(1500).write(folder / "image.bin");
  writeFile(folder / "image.cue", sheet);
  return makePortable(check(folder / "image.cue", {}), folder / "image.cue");
}

TEST(PortableSheet, TakesTheDashesOffACatalogueNumber) {
  const disc::PortableDisc disc = portableOf(
      "CATALOG 0-731452-345622\nFILE \"image.bin\" BINARY\nTRACK 01 AUDIO\n"
      "INDEX 01 00:00:00\n");
  EXPECT_EQ(disc.catalog, "0731452345622");
  EXPECT_THAT(disc.changes,
              testing::ElementsAre("CATALOG 0-731452-345622 is written as 0731452345622."));
}

TEST(PortableSheet, LeavesOutFlagsThatAreNone) {
  const disc::PortableDisc disc = portableOf(
      "FILE \"image.bin\" BINARY\nTRACK 01 AUDIO\nFLAGS dcp LOUD pre\nINDEX 01 00:00:00\n");
  EXPECT_EQ(disc.tracks.at(0).flags, "DCP PRE");
  EXPECT_THAT(disc.changes, testing::Contains(testing::HasSubstr("FLAGS \"LOUD\" is left out")));
}

TEST(PortableSheet, TakesTheComposerForTheSongwriterWhereNoneIsNamed) {
  const disc::PortableDisc disc = portableOf(
      "COMPOSER \"C. Poser\"\nFILE \"image.bin\" BINARY\nTRACK 01 AUDIO\n"
      "SONGWRITER \"S. Writer\"\nCOMPOSER \"C. Poser\"\nINDEX 01 00:00:00\n");
  EXPECT_EQ(disc.fields.songwriter, "C. Poser");
  EXPECT_EQ(disc.tracks.at(0).fields.songwriter, "S. Writer");
  EXPECT_THAT(disc.changes, testing::Contains(testing::HasSubstr("COMPOSER is left out")));
}

TEST(PortableSheet, SaysOfLongWordsWithWhatTheyBegin) {
  const std::string word(41, 'L');
  const disc::PortableDisc disc =
      portableOf("CATALOG " + word + "\nFILE \"image.bin\" BINARY\nTRACK 01 AUDIO\nFLAGS " + word +
                 "\nISRC " + word + "\nINDEX 01 00:00:00\n");
  const auto begins = '"' + std::string(40, 'L') + "\" is left out";
  EXPECT_THAT(disc.changes, testing::Contains(testing::HasSubstr("CATALOG " + begins)));
  EXPECT_THAT(disc.changes, testing::Contains(testing::HasSubstr("FLAGS " + begins)));
  EXPECT_THAT(disc.changes, testing::Contains(testing::HasSubstr("ISRC " + begins)));
}

TEST(JoinedImage, OfAFileThatHasBecomeShorterMeanwhileIsNotWritten) {
  TemporaryFolder folder;
  const std::string bytes = TestImage(401).bytes();
  writeFile(folder / "a.bin", bytes.substr(0, 400 * 2352 + 1000));
  writeFile(folder / "sheet.cue", "FILE \"a.bin\" BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n");
  const Report report = check(folder / "sheet.cue", {});
  disc::PortableDisc disc = makePortable(report, folder / "new.cue");
  const auto pieces = joinFiles(report, folder / "new.bin", folder / "new.cue", disc);
  std::string joined;
  const auto join = [&] {
    joined.clear();
    writePieces(
        report, pieces, [&](std::string_view some) { joined += some; }, [](int64_t, int64_t) {});
  };
  join();
  EXPECT_EQ(joined.substr(0, 400 * 2352 + 1000), bytes.substr(0, 400 * 2352 + 1000));
  EXPECT_EQ(joined.substr(400 * 2352 + 1000), std::string(1352, '\0'));
  fs::resize_file(folder / "a.bin", 400 * 2352 + 996);
  try {
    join();
    FAIL() << "a frame is missing";
  } catch (const Failure& failure) {
    EXPECT_THAT(failure.what(), testing::HasSubstr("a.bin\" cannot be read to its end; copy it"));
  }
}

TEST(SecondSheet, NeverReplacesTheSheetOrAnImageEvenByAnotherName) {
  TemporaryFolder folder;
  writeFile(folder / "sheet", "s");
  writeFile(folder / "image", "i");
  writeFile(folder / "other", "o");
  fs::create_symlink("image", folder / "link");
  EXPECT_THROW(refuseTarget(folder / "sheet", folder / "sheet", {}, true), Failure);
  EXPECT_THROW(refuseTarget(folder / "link", folder / "sheet", {folder / "image"}, true), Failure);
  EXPECT_THROW(refuseTarget(folder / "other", folder / "sheet", {}, false), Failure);
  EXPECT_NO_THROW(refuseTarget(folder / "other", folder / "sheet", {}, true));
}

}  // namespace
}  // namespace velmor::check::test
