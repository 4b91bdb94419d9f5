// velmor-render --ddp: a render that brings the set along.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/ddp/set_folder.h"

namespace velmor::ddp::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

class RenderedSet : public testing::Test {
 protected:
  RenderedSet() {
    writeFile(m_sheets.folder / "one.wav", test_kit::wavFile(countingSectors(1000)));
    writeFile(m_sheets.folder / "two.wav", test_kit::wavFile(countingSectors(1000)));
  }

  test_kit::EndedProcess render(const std::vector<std::string>& more) {
    std::vector<std::string> called = {VELMOR_RENDER, "one.wav", "two.wav", "-o",
                                       "album.cue",   "--ddp",   "master"};
    called.insert(called.end(), more.begin(), more.end());
    test_kit::ProcessOptions options;
    options.folder = m_sheets.folder.path().string();
    return test_kit::runProcess(called, options);
  }
  bool exists(const std::string& name) const { return fs::exists(m_sheets.folder / name); }

  SheetFolder m_sheets;
};

TEST_F(RenderedSet, StartsItsTracksWhereTheyTrulyStart) {
  // 1000 sectors of sound and 150 of silence: the second title starts in sector 1150, which the
  // module's sheet, with its truncated times, calls 1149.
  const auto ended = render({"--track-leadin", "2000", "--title", "Night Drive", "--catalog",
                             "0731452345622", "--isrc", "2=USABC0500002"});
  ASSERT_EQ(ended.status, 0) << ended.all;
  EXPECT_THAT(readFile(m_sheets.folder / "album.cue"), HasSubstr("INDEX 01 00:15:24"));
  const CheckedSet set = m_sheets.check("master");
  EXPECT_TRUE(set.ready());
  EXPECT_EQ(set.layout.tracks[1].at(1), 1150 + 150);
  EXPECT_EQ(set.layout.tracks[1].at(0), 1000 + 150);
  EXPECT_EQ(set.layout.tracks[1].isrc, "USABC0500002");
  EXPECT_EQ(set.layout.catalogue, "0731452345622");
  EXPECT_EQ(set.texts.block(disc::TextKind::kTitle).disc, "Night Drive");
  EXPECT_EQ(readFile(m_sheets.folder / "master/IMAGE.DAT"),
            std::string(size_t{150} * 2352, '\0') + readFile(m_sheets.folder / "album.bin"));
  EXPECT_THAT(ended.out, HasSubstr("master: the DDP 2.00 set for a pressing plant\n"));
  EXPECT_THAT(ended.out, testing::EndsWith("master: ready, 0 errors, 0 warnings, 0 notes\n"));
}

TEST_F(RenderedSet, TakesADiscLeadInForThePauseOfEveryDisc) {
  ASSERT_EQ(render({"--disc-leadin", "3000"}).status, 0);
  const CheckedSet set = m_sheets.check("master");
  EXPECT_EQ(set.layout.tracks[0].at(1), 225);
  EXPECT_EQ(readFile(m_sheets.folder / "master/IMAGE.DAT"),
            readFile(m_sheets.folder / "album.bin"));
}

TEST_F(RenderedSet, IsRefusedBeforeTheRenderWhereItCannotBe) {
  for (const std::vector<std::string>& wrong :
       {std::vector<std::string>{"--disc-leadin", "1000"}, {"--ddp", "."}, {"--ddp", "none/set"}}) {
    std::vector<std::string> called = {VELMOR_RENDER, "one.wav", "-o", "album.cue"};
    if (wrong[0] != "--ddp") called.insert(called.end(), {"--ddp", "master"});
    called.insert(called.end(), wrong.begin(), wrong.end());
    test_kit::ProcessOptions options;
    options.folder = m_sheets.folder.path().string();
    const auto ended = test_kit::runProcess(called, options);
    EXPECT_EQ(ended.status, 1) << ended.all;
    EXPECT_THAT(m_sheets.folder.names(), ElementsAre("a.bin", "a.cue", "one.wav", "two.wav"));
  }
}

TEST_F(RenderedSet, ReplacesNoFolderUnasked) {
  fs::create_directory(m_sheets.folder / "master");
  writeFile(m_sheets.folder / "master/DDPID", "old");
  EXPECT_EQ(render({}).status, 1);
  EXPECT_FALSE(exists("album.cue"));
  EXPECT_EQ(render({"--force"}).status, 0);
  EXPECT_TRUE(m_sheets.check("master").ready());
}

TEST_F(RenderedSet, ThatIsRefusedLeavesTheAlbumAndSaysWhy) {
  const auto ended = render({"--marker", "1=ISRC=USABC"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.out, HasSubstr("[isrc-form]"));
  EXPECT_THAT(ended.err, HasSubstr("\"master\" was not written"));
  EXPECT_TRUE(exists("album.cue"));
  EXPECT_FALSE(exists("master"));
}

TEST_F(RenderedSet, StandsInTheJsonReport) {
  const auto json = nlohmann::json::parse(render({"--json"}).out);
  EXPECT_EQ(json["ddp_set"]["written"], true);
  EXPECT_EQ(json["ddp_set"]["check"]["ready"], true);
  EXPECT_EQ(json["ddp_set"]["check"]["tracks"].size(), 2U);
}

}  // namespace
}  // namespace velmor::ddp::test
