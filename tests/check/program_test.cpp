// The program as a process: options, exit status, files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "disc/version.h"
#include "tests/check/reader_process.h"
#include "tests/check/test_images.h"
#include "tests/kit/as_nobody.h"
#include "tests/kit/terminal_run.h"

namespace velmor::check::test {
namespace {

using testing::HasSubstr;

class ProgramTest : public testing::Test {
 protected:
  ProgramTest() {
    TestImage(1500).write(m_folder / "image.bin");
    writeFile(m_folder / "image.cue",
              "CATALOG \"0731452345622\"\r\nFILE \"image.bin\" BINARY\r\nTRACK 01 AUDIO\r\n"
              "INDEX 01 00:00:00\r\n");
  }

  ProcessResult run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), VELMOR_CDCHECK);
    return runProcess(arguments, m_folder.path().string());
  }

  TemporaryFolder m_folder;
};

TEST_F(ProgramTest, ExitsWith0Or1Or2) {
  EXPECT_EQ(run({"image.cue"}).status, 0);
  EXPECT_EQ(run({"image.cue", "--strict"}).status, 1);
  EXPECT_EQ(run({"image.cue", "--for", "k3b"}).status, 1);
  EXPECT_EQ(run({"none.cue"}).status, 2);
  EXPECT_EQ(run({"."}).status, 2);
  EXPECT_EQ(run({}).status, 2);
  EXPECT_EQ(run({"image.cue", "--wrong"}).status, 2);
  EXPECT_EQ(run({"--help"}).status, 0);
}

TEST_F(ProgramTest, TellsTheVersionOfTheProject) {
  const ProcessResult told = run({"--version"});
  EXPECT_EQ(told.status, 0);
  EXPECT_EQ(told.out, std::string("velmor-cdcheck ") + disc::kVersion + '\n');
}

TEST_F(ProgramTest, NamesTheReadersItKnowsWhenItDoesNotKnowOne) {
  const ProcessResult result = run({"image.cue", "--for", "mpv,nero"});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.all, HasSubstr("no reader \"nero\""));
  EXPECT_THAT(result.all, HasSubstr("cuetools, libcue, libburn"));
}

TEST_F(ProgramTest, PrintsOneJsonObjectEvenOfBytesThatAreNoText) {
  writeFile(m_folder / "image.cue", "\xFF\xFE TITLE \x01 \"\n" + readFile(m_folder / "image.cue"));
  const auto json = nlohmann::json::parse(run({"image.cue", "--json"}).out);
  EXPECT_EQ(json["schema"], 1);
  EXPECT_EQ(json["tracks"][0]["start_sector"], 0);
  EXPECT_FALSE(json["findings"].empty());
}

TEST_F(ProgramTest, WritesBothSecondSheetsAndLeavesTheFirstAlone) {
  const std::string sheet = readFile(m_folder / "image.cue");
  const std::string image = readFile(m_folder / "image.bin");
  const ProcessResult result = run({"image.cue", "--portable", "p.cue", "--toc", "p.toc"});
  EXPECT_EQ(result.status, 0) << result.all;
  EXPECT_THAT(result.out, HasSubstr("changed: CATALOG is written without quotes."));
  EXPECT_THAT(readFile(m_folder / "p.cue"), HasSubstr("CATALOG 0731452345622\r\n"));
  EXPECT_THAT(readFile(m_folder / "p.toc"), HasSubstr("FILE \"image.bin\" SWAP 00:00:00\n"));
  EXPECT_EQ(readFile(m_folder / "image.cue"), sheet);
  EXPECT_EQ(readFile(m_folder / "image.bin"), image);
}

TEST_F(ProgramTest, RefusesToReplaceAFileAndWritesNeither) {
  writeFile(m_folder / "p.toc", "old");
  const ProcessResult result = run({"image.cue", "--portable", "p.cue", "--toc", "p.toc"});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.all, HasSubstr("--force"));
  EXPECT_EQ(readFile(m_folder / "p.toc"), "old");
  EXPECT_FALSE(std::filesystem::exists(m_folder / "p.cue"));
  EXPECT_EQ(run({"image.cue", "--toc", "p.toc", "--force"}).status, 0);
}

TEST_F(ProgramTest, WritesNeitherWhenTheSecondOfThemCannotBeWritten) {
  EXPECT_EQ(run({"image.cue", "--portable", "p.cue", "--toc", "none/p.toc"}).status, 2);
  EXPECT_FALSE(std::filesystem::exists(m_folder / "p.cue"));
  const auto files = std::filesystem::directory_iterator(m_folder.path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 2);
}

TEST_F(ProgramTest, NeverReplacesTheSheetItself) {
  EXPECT_EQ(run({"image.cue", "--portable", "image.cue", "--force"}).status, 2);
  EXPECT_EQ(run({"image.cue", "--portable", "image.bin", "--force"}).status, 2);
  EXPECT_EQ(run({"image.cue", "--portable", "a", "--toc", "./a"}).status, 2);
}

TEST_F(ProgramTest, NamesTheImageRelativeToTheNewSheetsFolder) {
  std::filesystem::create_directory(m_folder / "out");
  EXPECT_EQ(run({"image.cue", "--portable", "out/p.cue"}).status, 0);
  EXPECT_THAT(readFile(m_folder / "out/p.cue"), HasSubstr("FILE \"../image.bin\" BINARY"));
}

TEST_F(ProgramTest, SaysWhyNoSecondSheetCanBeMade) {
  writeFile(m_folder / "image.cue", "FILE \"image.bin\" BINARY\nTRACK 01 AUDIO\n");
  const ProcessResult result = run({"image.cue", "--portable", "p.cue"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.all, HasSubstr("no second sheet can be made from \"image.cue\": "));
  EXPECT_FALSE(std::filesystem::exists(m_folder / "p.cue"));
}

TEST_F(ProgramTest, SaysInAFewLinesThatAnImageIsNoSheet) {
  const ProcessResult result = run({"image.bin"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.out, HasSubstr("[no-tracks]"));
  EXPECT_THAT(result.out, testing::Not(HasSubstr("unknown-command")));
}

TEST_F(ProgramTest, TakesNoFileOver16MiBForASheet) {
  writeSparse(m_folder / "image.cue", int64_t{16} << 20);
  EXPECT_EQ(run({"image.cue"}).status, 1);
  writeSparse(m_folder / "image.cue", (int64_t{16} << 20) + 1);
  const ProcessResult result = run({"image.cue"});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.all, HasSubstr("is over 16 MiB and no cue sheet"));
}

TEST_F(ProgramTest, DoesNotWaitForAPipeThatNobodyWritesTo) {
  ASSERT_EQ(::mkfifo((m_folder / "pipe.cue").c_str(), 0600), 0);
  const ProcessResult result = run({"pipe.cue"});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.all, HasSubstr("\"pipe.cue\" is no regular file"));
}

TEST_F(ProgramTest, SaysThatAFolderCannotBeLookedInto) {
  namespace fs = std::filesystem;
  fs::create_directory(m_folder / "closed");
  for (const char* const name : {"image.cue", "image.bin"})
    fs::copy(m_folder / name, m_folder / "closed" / name);
  std::string sheet = readFile(m_folder / "image.cue");
  sheet.replace(sheet.find("image.bin"), 9, "closed/image.bin");
  writeFile(m_folder / "outside.cue", sheet);
  fs::permissions(m_folder.path(), fs::perms::all);
  fs::permissions(m_folder / "closed", fs::perms::owner_all);
  const auto run_as_nobody = [&](const std::string& argument) {
    test_kit::ProcessOptions options;
    options.folder = m_folder.path().string();
    options.in_child = test_kit::becomeNobody;
    return test_kit::runProcess({VELMOR_CDCHECK, argument}, options);
  };
  if (run_as_nobody("--version").status != 0)
    GTEST_SKIP() << "another user cannot be, or cannot run the program";
  const ProcessResult within = run_as_nobody("closed/image.cue");
  EXPECT_EQ(within.status, 2);
  EXPECT_THAT(within.all, HasSubstr("the sheet \"closed/image.cue\" cannot be opened: Permission "
                                    "denied; check its name and folder"));
  const ProcessResult image = run_as_nobody("outside.cue");
  EXPECT_EQ(image.status, 1);
  EXPECT_THAT(image.all, HasSubstr("\"closed/image.bin\" cannot be opened: Permission denied"));
  EXPECT_EQ((within.all + image.all).find("regular file"), std::string::npos);
}

TEST_F(ProgramTest, TellsCdrskinToStartInTheSheetsFolder) {
  std::filesystem::create_directory(m_folder / "within");
  const auto check = [&](const std::string& folder, const std::string& sheet) {
    return runProcess({VELMOR_CDCHECK, sheet, "--for", "cdrskin"}, folder);
  };
  const ProcessResult away = check((m_folder / "within").string(), "../image.cue");
  EXPECT_THAT(away.out,
              HasSubstr("note line 2 [file-from-working-folder] \"image.bin\" counts from "
                        "the sheet's folder, which is not the one you are in"));
  EXPECT_THAT(away.out, HasSubstr("Start cdrskin in the sheet's folder."));
  EXPECT_EQ(away.status, 0);
  const ProcessResult here = check(m_folder.path().string(), "image.cue");
  EXPECT_EQ(here.out.find("file-from-working-folder"), std::string::npos);
  EXPECT_EQ(runProcess({VELMOR_CDCHECK, "../image.cue"}, (m_folder / "within").string())
                .out.find("file-from-working-folder"),
            std::string::npos)
      << "of one reader alone";
}

TEST_F(ProgramTest, CountsWhatItLeavesOutBehindTheLinesThatItShows) {
  std::string sheet = readFile(m_folder / "image.cue");
  for (int i = 0; i < 60; ++i) sheet += "NONSENSE\r\n";
  writeFile(m_folder / "image.cue", sheet);
  EXPECT_THAT(run({"image.cue"}).out,
              HasSubstr("line 54 [unknown-command] 10 more of this kind are left out"));
}

TEST_F(ProgramTest, PrintsNoControlCharactersOfASheetWhereverItQuotesThem) {
  const std::string sheet = readFile(m_folder / "image.cue");
  writeFile(m_folder / "image.cue", sheet + "ISRC \x1B[31mX\r\n");
  const ProcessResult written = run({"image.cue", "--portable", "p.cue"});
  EXPECT_THAT(written.out, HasSubstr("changed: Track 1: ISRC \"?[31mX\" is left out"));
  EXPECT_EQ(written.all.find('\x1B'), std::string::npos);
  writeFile(m_folder / "image.cue", sheet + "TRACK 02 \x1B[31m\r\nINDEX 01 00:08:00\r\n");
  EXPECT_EQ(run({"image.cue", "--portable", "q.cue"}).all.find('\x1B'), std::string::npos);
}

TEST_F(ProgramTest, SaysInJsonAllThatItSaysInLines) {
  const ProcessResult result =
      run({"image.cue", "--json", "--portable", "p.cue", "--toc", "p.toc"});
  const auto json = nlohmann::json::parse(result.out);
  EXPECT_EQ(json["written"], (nlohmann::json{"p.cue", "p.toc"}));
  EXPECT_EQ(json["changes"][0], "CATALOG is written without quotes.");
  EXPECT_EQ(json["findings"][0]["rule"], "catalog-quoted");
  EXPECT_EQ(json["findings"][0]["damage"], "the number is lost or cut");
}

TEST_F(ProgramTest, DoesNotCallAReportDoneThatNobodyGot) {
  for (const std::string options : {"image.cue", "image.cue --json", "--help", "--version"}) {
    const ProcessResult full = runProcess(
        {"sh", "-c", VELMOR_CDCHECK " " + options + " > /dev/full"}, m_folder.path().string());
    EXPECT_EQ(full.status, 2) << options;
    EXPECT_THAT(full.all, HasSubstr("cannot be written to standard output: No space left"));
  }
}

TEST_F(ProgramTest, SaysWhatIsWrongWithItsUseInTheFormOfAllMessages) {
  EXPECT_EQ(run({"image.cue", "--wrong"}).all,
            "velmor-cdcheck: the following argument was not expected: --wrong; --help lists the "
            "options\n");
  EXPECT_EQ(run({"none.cue"}).all,
            "velmor-cdcheck: the sheet \"none.cue\" cannot be opened: No such file or directory; "
            "check its name and folder\n");
}

TEST_F(ProgramTest, RefusesASecondSheetBehindLinksThatLeadInACircle) {
  std::filesystem::create_symlink("circle", m_folder / "circle");
  const ProcessResult refused =
      run({"image.cue", "--portable", "circle/p.cue", "--toc", "circle/p.toc"});
  EXPECT_EQ(refused.status, 2);
  EXPECT_THAT(refused.all, HasSubstr("velmor-cdcheck: \"circle/p.cue\" cannot be written: Too many "
                                     "levels of symbolic links; choose another place\n"));
}

TEST_F(ProgramTest, ShowsItsProgressOnAnImageThatNoDiscHoldsAndReadsNoMoreOfIt) {
  writeSparse(m_folder / "image.bin", int64_t{10} << 30);
  test_kit::TerminalRun run({VELMOR_CDCHECK, (m_folder / "image.cue").string()});
  // Of two and a half gigabytes, not of ten.
  EXPECT_TRUE(run.waitFor("0 %  of 2352 MB")) << run.output();
  EXPECT_TRUE(run.waitFor(" %  of 2352 MB")) << "and again: " << run.output();
  if (VELMOR_SANITIZED) return;  // to read all of them would take it minutes
  EXPECT_TRUE(run.waitFor("[disc-too-long]")) << run.output();
  EXPECT_EQ(run.finish(), 1);
  EXPECT_THAT(run.output(), testing::Not(HasSubstr("[image-unreadable]")));
}

/// The program, with ^C typed once it shows `at_work`.
class Interrupted : public ProgramTest {
 protected:
  Interrupted() { writeSparse(m_folder / "image.bin", int64_t{2352} * 60'000); }

  std::string path(const std::string& name) { return (m_folder / name).string(); }

  /// What it shows in the end. Work that was done before the signal came is done again, without the
  /// files that it has made.
  std::string output(const std::vector<std::string>& options, const std::string& at_work) {
    std::vector<std::string> command{VELMOR_CDCHECK, path("image.cue")};
    command.insert(command.end(), options.begin(), options.end());
    for (int tries = 0; tries < 50; ++tries) {
      for (const char* made : {"p.cue", "p.bin", "p.html"}) std::filesystem::remove(path(made));
      test_kit::TerminalRun run(command);
      EXPECT_TRUE(run.waitFor(at_work)) << run.output();
      run.type("\x03");
      const int status = run.finish();
      if (status == 0) continue;
      EXPECT_EQ(status, 128 + SIGINT) << run.output();
      return run.output();
    }
    ADD_FAILURE() << "the work was always done before the signal came";
    return {};
  }
};

TEST_F(Interrupted, WhileItJoinsLeavesNothingBehind) {
  EXPECT_THAT(output({"--portable", path("p.cue"), "--join", path("p.bin")}, "Joining"),
              HasSubstr("velmor-cdcheck: interrupted; nothing was written"));
  const auto files = std::filesystem::directory_iterator(m_folder.path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 2);
}

TEST_F(Interrupted, AtItsPageTellsWhatIsWritten) {
  EXPECT_THAT(output({"--portable", path("p.cue"), "--html", path("p.html")}, "Measuring"),
              testing::AllOf(HasSubstr("written: " + path("p.cue")),
                             HasSubstr("velmor-cdcheck: \"" + path("p.html") +
                                       "\" was not written: interrupted")));
  EXPECT_TRUE(std::filesystem::exists(path("p.cue")));
  EXPECT_FALSE(std::filesystem::exists(path("p.html")));
}

TEST_F(ProgramTest, PrintsNoControlCharactersOfANameInItsMessages) {
  const ProcessResult result = run({"none\x1B[31m\nat all.cue"});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.all, HasSubstr("the sheet \"none?[31m?at all.cue\" cannot be opened"));
}

TEST_F(ProgramTest, DrawsNoProgressBarIntoAPipe) {
  EXPECT_EQ(run({"image.cue"}).all, run({"image.cue"}).out);
}

}  // namespace
}  // namespace velmor::check::test
