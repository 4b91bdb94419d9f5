// The programs that write a page, as processes: what is there afterwards, and what is said.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <nlohmann/json.hpp>

#include "tests/check/test_images.h"
#include "tests/ddp/set_folder.h"

namespace velmor::page::test {
namespace {

using check::test::TestImage;
using test_kit::readFile;
using test_kit::writeFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class PageProgram : public testing::Test {
 protected:
  PageProgram() {
    TestImage(1500).write(m_folder / "image.bin");
    writeFile(m_folder / "image.cue",
              "TITLE \"Night <Drive>\"\r\nFILE \"image.bin\" BINARY\r\nTRACK 01 AUDIO\r\n"
              "INDEX 01 00:00:00\r\n");
  }

  test_kit::EndedProcess run(const std::vector<std::string>& more,
                             const char* program = VELMOR_CDCHECK, void (*in_child)() = nullptr) {
    std::vector<std::string> called{program};
    called.insert(called.end(), more.begin(), more.end());
    test_kit::ProcessOptions options;
    options.folder = m_folder.path().string();
    options.in_child = in_child;
    return test_kit::runProcess(called, options);
  }

  test_kit::ScratchFolder m_folder;
};

TEST_F(PageProgram, WritesThePageAndSaysSo) {
  const auto ended = run({"image.cue", "--html", "page.html"});
  EXPECT_EQ(ended.status, 0) << ended.all;
  EXPECT_THAT(ended.out, HasSubstr("\nwritten: page.html\n"));
  const std::string page = readFile(m_folder / "page.html");
  EXPECT_THAT(page, HasSubstr("<title>Night &lt;Drive&gt;</title>"));
  EXPECT_THAT(page, testing::EndsWith("</html>\n"));
  EXPECT_THAT(m_folder.names(), ElementsAre("image.bin", "image.cue", "page.html"));
}

TEST_F(PageProgram, WritesTheSamePageEveryTime) {
  run({"image.cue", "--html", "a.html"});
  run({"image.cue", "--html", "b.html"});
  EXPECT_EQ(readFile(m_folder / "a.html"), readFile(m_folder / "b.html"));
}

TEST_F(PageProgram, NamesThePageInItsJson) {
  const auto json = nlohmann::json::parse(
      run({"image.cue", "--html", "page.html", "--json", "--toc", "a.toc"}).out);
  EXPECT_EQ(json["written"], (nlohmann::json{"a.toc", "page.html"}));
}

TEST_F(PageProgram, RefusesAPlaceThatIsTakenBeforeItReadsTheImage) {
  writeFile(m_folder / "page.html", "old");
  const auto ended = run({"image.cue", "--html", "page.html"});
  EXPECT_EQ(ended.status, 2);
  EXPECT_EQ(ended.out, "");
  EXPECT_THAT(ended.err,
              HasSubstr("\"page.html\" is there already; choose another name with --html"));
  EXPECT_EQ(readFile(m_folder / "page.html"), "old");
  EXPECT_EQ(run({"image.cue", "--html", "page.html", "--force"}).status, 0);
  EXPECT_THAT(readFile(m_folder / "page.html"), HasSubstr("<!DOCTYPE html>"));
}

TEST_F(PageProgram, RefusesAPlaceThatCannotBeWrittenBeforeItReadsTheImage) {
  const auto nowhere = run({"image.cue", "--html", "none/page.html"});
  EXPECT_EQ(nowhere.status, 2);
  EXPECT_EQ(nowhere.out, "");
  EXPECT_THAT(nowhere.err, HasSubstr("\"none/page.html\" cannot be written: No such file"));
  EXPECT_THAT(run({"image.cue", "--html", "."}).err, HasSubstr("is a folder; name a file in it"));
}

TEST_F(PageProgram, NeverTakesThePlaceOfWhatItIsAbout) {
  const std::string sheet = readFile(m_folder / "image.cue");
  for (const char* name : {"image.cue", "./image.bin", "p.cue"}) {
    const auto ended = run({"image.cue", "--portable", "p.cue", "--force", "--html", name});
    EXPECT_EQ(ended.status, 2) << name;
    EXPECT_THAT(ended.err, HasSubstr("would take the place of another file")) << name;
  }
  EXPECT_EQ(readFile(m_folder / "image.cue"), sheet);
}

TEST_F(PageProgram, LeavesNothingOfAPageThatTheDiskHasNoRoomFor) {
  const auto ended = run({"image.cue", "--html", "page.html"}, VELMOR_CDCHECK, [] {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit few{2000, 2000};
    setrlimit(RLIMIT_FSIZE, &few);
  });
  EXPECT_EQ(ended.status, 2);
  EXPECT_THAT(ended.out, HasSubstr("image.cue: ready"));
  EXPECT_THAT(ended.out, Not(HasSubstr("written")));
  EXPECT_THAT(ended.err, HasSubstr("\"page.html\" cannot be written: File too large"));
  EXPECT_THAT(m_folder.names(), ElementsAre("image.bin", "image.cue"));
}

TEST_F(PageProgram, MakesAPageOfASheetThatIsNone) {
  EXPECT_EQ(run({"image.bin", "--html", "page.html"}).status, 1);
  EXPECT_THAT(readFile(m_folder / "page.html"), HasSubstr("There are no tracks."));
}

TEST_F(PageProgram, SaysThatTheSystemGivesItNoThread) {
  const auto ended = run({"image.cue", "--html", "page.html"}, VELMOR_CDCHECK, [] {
    // A thread's stack is as large as the limit of the first one: larger than all addresses here.
    rlimit stacks{};
    getrlimit(RLIMIT_STACK, &stacks);
    stacks.rlim_cur = rlim_t{1} << 47;
    if (setrlimit(RLIMIT_STACK, &stacks) != 0) _exit(77);
  });
  if (ended.status == 77) GTEST_SKIP() << "stacks are limited here for good";
  EXPECT_EQ(ended.status, 2);
  EXPECT_THAT(ended.err, HasSubstr("velmor-cdcheck: no thread can be begun: "));
  EXPECT_THAT(m_folder.names(), ElementsAre("image.bin", "image.cue"));
}

TEST_F(PageProgram, IsMadeByOneThreadWhereThereIsNoRoomForMore) {
  if (VELMOR_SANITIZED) GTEST_SKIP() << "a sanitizer needs all addresses";
  const auto ended = run({"image.cue", "--html", "page.html"}, VELMOR_CDCHECK, [] {
    // The stack of one thread takes more than half of the addresses.
    const rlimit stacks{rlim_t{600} << 20, RLIM_INFINITY};
    const rlimit addresses{rlim_t{1} << 30, rlim_t{1} << 30};
    if (setrlimit(RLIMIT_STACK, &stacks) != 0 || setrlimit(RLIMIT_AS, &addresses) != 0) _exit(77);
  });
  if (ended.status == 77) GTEST_SKIP() << "stacks are limited here for good";
  EXPECT_EQ(ended.err, "");
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(m_folder.names(), testing::Contains("page.html"));
}

TEST_F(PageProgram, JudgesAsStrictlyAsTheReport) {
  writeFile(m_folder / "image.cue",
            "CATALOG \"0731452345622\"\r\n" + readFile(m_folder / "image.cue"));
  run({"image.cue", "--html", "page.html"});
  EXPECT_THAT(readFile(m_folder / "page.html"), HasSubstr("<strong>Ready</strong>"));
  run({"image.cue", "--html", "page.html", "--strict", "--force"});
  EXPECT_THAT(readFile(m_folder / "page.html"), HasSubstr("<strong>Not ready</strong>"));
}

TEST_F(PageProgram, ShowsTheReadersThatMatter) {
  run({"image.cue", "--html", "page.html", "--for", "k3b"});
  const std::string page = readFile(m_folder / "page.html");
  EXPECT_THAT(page, HasSubstr("k3b</td>"));
  EXPECT_THAT(page, Not(HasSubstr("mpv</td>")));
}

TEST_F(PageProgram, DoesNotSayThatAProgramTakesASheetThatNobodyCanTake) {
  std::filesystem::remove(m_folder / "image.bin");
  run({"image.cue", "--html", "page.html"});
  EXPECT_THAT(readFile(m_folder / "page.html"), Not(HasSubstr("takes it")));
}

class SetPage : public testing::Test {
 protected:
  SetPage() { m_sheets.write("master"); }
  test_kit::EndedProcess run(const char* program, std::vector<std::string> called) {
    called.insert(called.begin(), program);
    test_kit::ProcessOptions options;
    options.folder = m_sheets.folder.path().string();
    return test_kit::runProcess(called, options);
  }
  std::string page() const { return readFile(m_sheets.folder / "page.html"); }

  ddp::test::SheetFolder m_sheets;
};

TEST_F(SetPage, IsTheSameFromEitherProgram) {
  const auto of_set = run(VELMOR_DDP, {"check", "master", "--html", "page.html"});
  EXPECT_EQ(of_set.status, 0) << of_set.all;
  EXPECT_THAT(of_set.out, testing::EndsWith("written: page.html\n"));
  const std::string first = page();
  EXPECT_THAT(first, HasSubstr("DDP 2.00 master"));
  EXPECT_THAT(first, HasSubstr("USABC2600002"));
  const auto of_checker = run(VELMOR_CDCHECK, {"master", "--html", "page.html", "--force"});
  EXPECT_EQ(of_checker.status, 0) << of_checker.all;
  EXPECT_EQ(of_checker.out, of_set.out);
  EXPECT_EQ(page(), first);
}

TEST_F(SetPage, ShowsWhatIsWrongWithTheSet) {
  m_sheets.patch("master/IMAGE.DAT", 400'000, "x");
  EXPECT_EQ(run(VELMOR_DDP, {"check", "master", "--html", "page.html"}).status, 1);
  EXPECT_THAT(page(), HasSubstr("A file of the set is not as it was made"));
  EXPECT_THAT(page(), HasSubstr("Not ready"));
}

TEST_F(SetPage, NeverTakesThePlaceOfAFileOfTheSet) {
  const auto ended = run(VELMOR_DDP, {"check", "master", "--html", "master/SD", "--force"});
  EXPECT_EQ(ended.status, 2);
  EXPECT_THAT(ended.err, HasSubstr("would take the place of another file"));
}

TEST_F(SetPage, IsNoSheetForOtherReaders) {
  const auto ended = run(VELMOR_CDCHECK, {"master", "--portable", "p.cue"});
  EXPECT_EQ(ended.status, 2);
  EXPECT_THAT(ended.err, HasSubstr("velmor-ddp extract makes a sheet of it"));
}

TEST_F(SetPage, IsOneOfSeveralThingsToCheckAndTakesNoPageThen) {
  const auto both = run(VELMOR_CDCHECK, {"none.cue", "master", "a.cue", "--json"});
  EXPECT_EQ(both.status, 2);
  EXPECT_THAT(both.err, HasSubstr("none.cue"));
  const auto json = nlohmann::json::parse(both.out);
  ASSERT_EQ(json.size(), 2U) << both.out;
  EXPECT_EQ(json[0]["folder"], "master");
  EXPECT_EQ(json[1]["sheet"], "a.cue");
  const auto none = run(VELMOR_CDCHECK, {"a", "b", "--json"});
  EXPECT_EQ(none.status, 2);
  EXPECT_EQ(nlohmann::json::parse(none.out), nlohmann::json::array());
  const auto paged = run(VELMOR_CDCHECK, {"master", "a.cue", "--html", "page.html"});
  EXPECT_EQ(paged.status, 2);
  EXPECT_EQ(paged.out, "");
  EXPECT_THAT(paged.err, HasSubstr("--html take one sheet, and here are 2"));
}

TEST_F(SetPage, IsNamedInTheJsonOfTheSet) {
  const auto ended = run(VELMOR_DDP, {"check", "master", "--json", "--html", "page.html"});
  EXPECT_EQ(nlohmann::json::parse(ended.out)["written"], nlohmann::json{"page.html"});
}

}  // namespace
}  // namespace velmor::page::test
