// velmor-render --portable-cue: a render that brings the second sheet along.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "check/check.h"
#include "tests/check/reader_process.h"
#include "tests/check/test_images.h"

namespace velmor::check::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

class PortableRenderTest : public testing::Test {
 protected:
  PortableRenderTest() {
    const TestImage sound(1000);
    writeFile(m_folder / "one.wav", wavHeader(sound.bytes().size()) + sound.bytes());
    writeFile(m_folder / "two.wav", wavHeader(sound.bytes().size()) + sound.bytes());
  }

  ProcessResult render(const std::vector<std::string>& more) {
    std::vector<std::string> called = {VELMOR_RENDER, "one.wav", "two.wav", "-o", "album.cue"};
    called.insert(called.end(), more.begin(), more.end());
    return runProcess(called, m_folder.path().string());
  }

  bool exists(const std::string& name) const { return fs::exists(m_folder / name); }

  TemporaryFolder m_folder;
};

const std::vector<std::string> kWithLeadIns = {"--portable-cue", "--track-leadin", "2000",
                                               "--catalog",      "0731452345622",  "--isrc",
                                               "2=USABC0500002"};

TEST_F(PortableRenderTest, NamesTheSectorsWhereTheTitlesTrulyStart) {
  // 1000 sectors of sound and 150 of silence: the second title starts in sector 1150, which the
  // module's sheet, with its truncated times, calls 1149.
  const ProcessResult run = render(kWithLeadIns);
  EXPECT_EQ(run.status, 0) << run.all;
  EXPECT_THAT(readFile(m_folder / "album.cue"), HasSubstr("INDEX 01 00:15:24"));
  const std::string sheet = readFile(m_folder / "album.portable.cue");
  EXPECT_THAT(sheet, HasSubstr("INDEX 00 00:13:25\r\n    INDEX 01 00:15:25\r\n"));
  EXPECT_THAT(sheet, HasSubstr("CATALOG 0731452345622\r\n"));
  EXPECT_THAT(sheet, HasSubstr("ISRC USABC0500002\r\n"));
  EXPECT_THAT(sheet, HasSubstr("FILE \"album.bin\" BINARY\r\n"));
}

TEST_F(PortableRenderTest, EndsWithTheVerdictOnBothSheetsAndLeavesOnlyTheThreeFiles) {
  const ProcessResult run = render(kWithLeadIns);
  EXPECT_THAT(run.out, HasSubstr("changed: CATALOG is written without quotes."));
  EXPECT_THAT(run.out, HasSubstr("\nalbum.cue: ready, 0 errors"));
  EXPECT_THAT(run.out, testing::EndsWith("album.portable.cue: ready, 0 errors, 0 warnings, "
                                         "0 notes\n"));
  EXPECT_THAT(run.all, Not(HasSubstr(".velmor-render-")));
  // Who chooses cdrskin is told from where to start it, and nothing else.
  EXPECT_THAT(
      check(m_folder / "album.portable.cue", {{Reader::k3b, Reader::kLibburn}, {}}).findings,
      testing::ElementsAre(testing::Field(&Finding::rule, "file-from-working-folder")));
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(m_folder.path()))
    if (entry.is_regular_file()) names.push_back(entry.path().filename().string());
  EXPECT_THAT(names, testing::UnorderedElementsAre("one.wav", "two.wav", "album.cue", "album.bin",
                                                   "album.portable.cue"));
}

TEST_F(PortableRenderTest, PutsTheVerdictsIntoTheJsonObject) {
  std::vector<std::string> options = kWithLeadIns;
  options.emplace_back("--json");
  const auto json = nlohmann::json::parse(render(options).out);
  const auto& portable = json["portable_sheet"];
  EXPECT_EQ(portable["path"], "album.portable.cue");
  EXPECT_EQ(portable["written"], true);
  EXPECT_EQ(portable["check_of_sheet"]["sheet"], "album.cue");
  EXPECT_EQ(portable["check"]["sheet"], "album.portable.cue");
  EXPECT_EQ(portable["check"]["tracks"][1]["start_sector"], 1150);
  EXPECT_FALSE(portable["check"]["changes"].empty());
}

TEST_F(PortableRenderTest, TouchesNothingWhereAnOlderSecondSheetStandsUnlessForced) {
  writeFile(m_folder / "album.portable.cue", "old");
  const ProcessResult refused = render({"--portable-cue"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.all, HasSubstr("\"album.portable.cue\" exists already; --force"));
  EXPECT_EQ(readFile(m_folder / "album.portable.cue"), "old");
  EXPECT_FALSE(exists("album.cue") || exists("album.bin"));
  EXPECT_EQ(render({"--portable-cue", "--force"}).status, 0);
  EXPECT_THAT(readFile(m_folder / "album.portable.cue"), HasSubstr("TRACK 02 AUDIO\r\n"));
}

TEST_F(PortableRenderTest, IsMadeOnlyWhenAskedFor) {
  const ProcessResult run = render({});
  EXPECT_EQ(run.status, 0) << run.all;
  EXPECT_FALSE(exists("album.portable.cue"));
  EXPECT_THAT(run.out, Not(HasSubstr("ready")));
}

TEST_F(PortableRenderTest, TellsOfClippingWithoutFailingTheRender) {
  const TestImage loud = TestImage(1000).level(588 * 10, 300, 32767);
  writeFile(m_folder / "one.wav", wavHeader(loud.bytes().size()) + loud.bytes());
  const ProcessResult run = render({"--portable-cue"});
  EXPECT_EQ(run.status, 0) << run.all;
  EXPECT_THAT(run.out, HasSubstr("[clipped]"));
}

/// The demo's five sources, of different formats, rates and channel counts.
TEST(DemoAlbum, GetsASecondSheetAndAReportThatAsksForNothing) {
  if (findProgram("sox").empty()) GTEST_SKIP() << "sox is not installed here";
  TemporaryFolder folder;
  const ProcessResult made =
      runProcess({"bash", "scripts/demo_album.sh", folder.path().string()}, VELMOR_SOURCE_DIR);
  ASSERT_EQ(made.status, 0) << made.all;
  const ProcessResult run = runProcess(
      {VELMOR_RENDER, "Headlights.wav", "Toll Road.flac", "Say Go.aiff",    "Rain.ogg",
       "Arrival.w64", "--catalog",      "0731452345622",  "--title",        "Night Drive",
       "--performer", "The Lanterns",   "--isrc",         "1=USABC2600001", "--disc-leadin",
       "2000",        "--track-leadin", "2000",           "--dither",       "tpdf",
       "-o",          "album.cue",      "--portable-cue"},
      folder.path().string());
  ASSERT_EQ(run.status, 0) << run.all;
  const Report report = check(folder / "album.cue", {});
  EXPECT_EQ(report.count(Severity::kError), 0) << run.all;
  EXPECT_EQ(report.disc.places.size(), 5u);
  fs::rename(folder / "album.bin", folder / "disc.bin");
  std::string sheet = readFile(folder / "album.portable.cue");
  sheet.replace(sheet.find("album.bin"), 9, "disc.bin");
  writeFile(folder / "disc.cue", sheet);
  const Report second = check(folder / "disc.cue", {});
  EXPECT_FALSE(second.failed(true)) << run.all;
}

}  // namespace
}  // namespace velmor::check::test
