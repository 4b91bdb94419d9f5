// velmor-render --html: a page that comes along with the album.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/ddp/set_folder.h"

namespace velmor::page::test {
namespace {

using test_kit::readFile;
using test_kit::writeFile;
using testing::HasSubstr;
using testing::Not;

class RenderedPage : public testing::Test {
 protected:
  RenderedPage() {
    for (const char* name : {"one.wav", "two.wav"})
      writeFile(m_folder / name, test_kit::wavFile(ddp::test::countingSectors(1000)));
  }

  test_kit::EndedProcess render(const std::vector<std::string>& more) {
    std::vector<std::string> called = {VELMOR_RENDER, "one.wav",        "two.wav", "-o",
                                       "album.cue",   "--track-leadin", "2000"};
    called.insert(called.end(), more.begin(), more.end());
    test_kit::ProcessOptions options;
    options.folder = m_folder.path().string();
    return test_kit::runProcess(called, options);
  }
  std::string page() const { return readFile(m_folder / "page.html"); }
  bool exists(const std::string& name) const { return std::filesystem::exists(m_folder / name); }

  test_kit::ScratchFolder m_folder;
};

TEST_F(RenderedPage, ShowsWhereTracksTrulyStart) {
  const auto ended = render({"--html", "page.html"});
  EXPECT_EQ(ended.status, 0) << ended.all;
  EXPECT_THAT(ended.out, HasSubstr("page.html: a page to look at\n"));
  // The second title starts in sector 1150, which the sheet's cut times call 1149.
  EXPECT_THAT(readFile(m_folder / "album.cue"), HasSubstr("INDEX 01 00:15:24"));
  EXPECT_THAT(page(), HasSubstr(">00:15:25</td>"));
  EXPECT_THAT(page(), Not(HasSubstr(">00:15:24</td>")));
  EXPECT_THAT(page(), HasSubstr("album.cue"));
  EXPECT_THAT(page(), HasSubstr("takes it"));
}

TEST_F(RenderedPage, IsThatOfTheSetWhereOneIsMade) {
  const auto ended = render({"--html", "page.html", "--ddp", "master", "--json"});
  EXPECT_EQ(ended.status, 0) << ended.all;
  EXPECT_THAT(page(), HasSubstr("DDP 2.00 master"));
  EXPECT_THAT(page(), HasSubstr("IMAGE.DAT"));
  EXPECT_THAT(page(), HasSubstr("takes it"));
  const auto json = nlohmann::json::parse(ended.out);
  EXPECT_EQ(json["page"]["path"], "page.html");
  EXPECT_EQ(json["page"]["written"], true);
}

TEST_F(RenderedPage, RefusesAPlaceThatIsTakenBeforeTheRender) {
  writeFile(m_folder / "page.html", "old");
  EXPECT_EQ(render({"--html", "page.html"}).status, 1);
  EXPECT_FALSE(exists("album.cue"));
  EXPECT_EQ(page(), "old");
  for (const char* name : {"album.cue", "album.bin", "one.wav", "none/page.html", "master"}) {
    EXPECT_EQ(render({"--html", name, "--ddp", "master", "--force"}).status, 1) << name;
    EXPECT_FALSE(exists("album.cue")) << name;
  }
}

}  // namespace
}  // namespace velmor::page::test
