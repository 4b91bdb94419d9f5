// Second sheets of foreign discs: several files, added silence, what cannot be mended.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/check/matrix/cells.h"
#include "tests/check/matrix/edits.h"
#include "tests/check/reader_process.h"
#include "tests/check/test_images.h"

namespace velmor::check::test {
namespace {

using testing::HasSubstr;

class SecondSheetTest : public testing::Test {
 protected:
  ProcessResult run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), VELMOR_CDCHECK);
    return runProcess(arguments, m_folder.path().string());
  }

  /// The good sheet after that edit, in the folder.
  Draft write(const std::string& edit) {
    Draft draft = goodDraft();
    for (const Edit& e : allEdits())
      if (e.name == edit) {
        EXPECT_TRUE(e.apply(draft));
        draft.name = edit;
      }
    EXPECT_EQ(draft.name, edit);
    writeDraft(draft, m_folder.path());
    return draft;
  }

  /// What all readers make of the second sheet is the disc that the first one means.
  void expectAllReadersTake(const std::string& sheet, const std::string& image, int64_t sectors,
                            const LoadedDisc& truth) {
    for (const auto& [reader, loaded] : askReaders([&](const std::filesystem::path& folder) {
           std::filesystem::copy(m_folder / sheet, folder / sheet);
           std::filesystem::copy(m_folder / image, folder / image);
           return SheetOnDisk{folder.string(), sheet, image, sectors};
         })) {
      EXPECT_TRUE(loaded.accepted) << readerName(reader) << '\n' << loaded.output.substr(0, 1000);
      EXPECT_EQ(difference(loaded, truth), "") << readerName(reader);
    }
  }

  TemporaryFolder m_folder;
};

TEST_F(SecondSheetTest, JoinsTheFilesOfADiscIntoTheOneImageThatAllReadersTake) {
  const Draft draft = write("a WAVE file for each track, the pause behind the file:file");
  const ProcessResult made = run({"image.cue", "--portable", "p.cue", "--join", "p.bin"});
  EXPECT_THAT(made.out, HasSubstr("written: p.bin"));
  EXPECT_THAT(made.out, HasSubstr("3 files become \"p.bin\""));
  EXPECT_EQ(readFile(m_folder / "p.bin"), TestImage(kDraftSectors).bytes());
  expectAllReadersTake("p.cue", "p.bin", kDraftSectors, draft.truth);
}

TEST_F(SecondSheetTest, PutsThePausesOfPregapAndPostgapIntoTheJoinedImage) {
  const std::string sound = TestImage(kDraftSectors).bytes();
  const std::string joined = sound.substr(0, 1050 * 2352) + std::string(size_t{100} * 2352, '\0') +
                             sound.substr(1050 * 2352);
  for (const char* edit : {"PREGAP:behind-isrc3", "POSTGAP:behind-index2.1"}) {
    const Draft draft = write(edit);
    run({"image.cue", "--portable", "p.cue", "--join", "p.bin", "--force"});
    EXPECT_EQ(readFile(m_folder / "p.bin"), joined) << edit;
    expectAllReadersTake("p.cue", "p.bin", kDraftSectors + 100, draft.truth);
  }
}

TEST_F(SecondSheetTest, SaysWhoRefusesADiscOfOneTrack) {
  write("one track");
  EXPECT_THAT(run({"image.cue", "--portable", "p.cue"}).out,
              HasSubstr("Not mended, track 1: the disc has one track. Refused by shnsplit."));
}

TEST_F(SecondSheetTest, SaysWhatItCannotMendAndForWhom) {
  write("as MODE1/2352:track3");
  const ProcessResult made = run({"image.cue", "--portable", "p.cue"});
  EXPECT_THAT(made.out, HasSubstr("changed: Not mended, track 3: the track is MODE1/2352, not "
                                  "AUDIO. Refused by libburn."));
  const ProcessResult joined = run({"image.cue", "--portable", "j.cue", "--join", "j.bin"});
  EXPECT_THAT(joined.all, HasSubstr("track 3 holds data, not audio; leave out --join"));
  EXPECT_FALSE(std::filesystem::exists(m_folder / "j.bin"));
}

TEST_F(SecondSheetTest, SaysWhoMindsTheNameOfTheJoinedImage) {
  write("LF");
  const ProcessResult made = run({"image.cue", "--portable", "p.cue", "--join", "p.img"});
  EXPECT_THAT(made.out, HasSubstr("changed: Not mended: the image's name does not end in \".bin\". "
                                  "Refused by mpv."));
}

TEST_F(SecondSheetTest, GivesAdviceForLibcdioOfTheJoinedImageAndForSheetsAlone) {
  write("named other.bin:file");
  const ProcessResult sheet = run({"image.cue", "--portable", "p.cue", "--join", "q.bin"});
  EXPECT_THAT(sheet.out, HasSubstr("it looks for \"p.bin\" beside the sheet"));
  const ProcessResult same = run({"image.cue", "--portable", "r.cue", "--join", "r.bin"});
  EXPECT_EQ(same.out.find("For libcdio"), std::string::npos) << same.out;
  const ProcessResult toc = run({"image.cue", "--toc", "t.toc", "--join", "s.bin"});
  EXPECT_EQ(toc.out.find("For libcdio"), std::string::npos) << toc.out;
}

TEST_F(SecondSheetTest, SaysNothingOfWhatItMended) {
  for (const char* edit : {"INDEX 02:behind-index2.1", "tracks from 2", "first index late:index1.1",
                           "blank-at-end:track2", "unquoted:title2"}) {
    write(edit);
    const ProcessResult made = run({"image.cue", "--portable", "p.cue", "--force"});
    EXPECT_EQ(made.out.find("Not mended"), std::string::npos) << edit << '\n' << made.out;
    EXPECT_THAT(run({"p.cue"}).out, HasSubstr("p.cue: ready, 0 errors")) << edit;
  }
}

TEST_F(SecondSheetTest, SaysNothingOfWhatNoReaderMinds) {
  write("LF");
  writeFile(m_folder / "image.cue",
            "FILE \"image.bin\" BINARY\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
            "  TRACK 02 AUDIO\n    INDEX 01 00:02:00\n");
  const ProcessResult made = run({"image.cue", "--portable", "p.cue"});
  EXPECT_THAT(made.out, HasSubstr("[track-under-4-s]"));
  EXPECT_EQ(made.out.find("Not mended"), std::string::npos) << made.out;
}

TEST_F(SecondSheetTest, GivesPerformersToADiscThatHasTitlesAlone) {
  // cdrdao writes no CD-TEXT that has the one without the other.
  write("none-at-all:performer");
  const ProcessResult made = run({"image.cue", "--portable", "p.cue"});
  EXPECT_THAT(made.out, HasSubstr("PERFORMER \"Unknown\" is added"));
  const std::string sheet = readFile(m_folder / "p.cue");
  size_t performers = 0;
  for (size_t at = 0; (at = sheet.find("PERFORMER \"Unknown\"", at)) != std::string::npos; ++at)
    ++performers;
  EXPECT_EQ(performers, 4u) << sheet;
}

TEST_F(SecondSheetTest, SaysAPauseInTheFileBeforeInATocThatCdrdaoReads) {
  write("a BINARY file for each track, the pause behind the file:file");
  EXPECT_EQ(run({"image.cue", "--toc", "p.toc"}).out.find("TOC"), std::string::npos);
  EXPECT_THAT(readFile(m_folder / "p.toc"), HasSubstr("FILE \"one.bin\" SWAP 00:05:25 00:02:00\n"
                                                      "FILE \"two.bin\" SWAP 00:00:00"));
  if (findProgram("cdrdao").empty()) GTEST_SKIP() << "cdrdao is not installed here";
  const ProcessResult toc = runProcess({"cdrdao", "show-toc", "p.toc"}, m_folder.path());
  EXPECT_THAT(toc.out, HasSubstr("PREGAP 00:02:00(   150)"));
  EXPECT_THAT(toc.out, HasSubstr("START  00:07:25(   550)"));
  EXPECT_THAT(toc.out, HasSubstr("END    00:20:00(  1500)"));
}

TEST_F(SecondSheetTest, RefusesToJoinOverAnythingAndWithoutASheet) {
  write("LF");
  EXPECT_EQ(run({"image.cue", "--join", "p.bin"}).status, 2);
  EXPECT_EQ(run({"image.cue", "--portable", "p", "--join", "p"}).status, 2);
  EXPECT_EQ(run({"image.cue", "--portable", "p.cue", "--join", "image.bin", "--force"}).status, 2);
  EXPECT_FALSE(std::filesystem::exists(m_folder / "p.cue"));
}

TEST_F(SecondSheetTest, ChecksSeveralSheetsInARun) {
  write("LF");
  std::filesystem::copy(m_folder / "image.cue", m_folder / "second.cue");
  const ProcessResult both = run({"image.cue", "second.cue"});
  EXPECT_EQ(both.status, 0);
  EXPECT_THAT(both.out, HasSubstr("image.cue: ready"));
  EXPECT_THAT(both.out, HasSubstr("second.cue: ready"));
  const ProcessResult with_missing = run({"none.cue", "image.cue", "second.cue", "--json"});
  EXPECT_EQ(with_missing.status, 2);
  const auto json = nlohmann::json::parse(with_missing.out);
  ASSERT_EQ(json.size(), 2u);
  EXPECT_EQ(json[1]["sheet"], "second.cue");
  EXPECT_EQ(run({"image.cue", "second.cue", "--portable", "p.cue"}).status, 2);
}

TEST_F(SecondSheetTest, NamesTheFileThatDiffersByCaseOrFolder) {
  write("as FILE \"IMAGE.BIN\" BINARY:file");
  EXPECT_THAT(run({"image.cue"}).out, HasSubstr("There is \"image.bin\" beside the sheet"));
  write("as FILE \"C:\\music\\image.bin\" BINARY:file");
  EXPECT_THAT(run({"image.cue"}).out, HasSubstr("There is \"image.bin\" beside the sheet"));
  write("as FILE \"none.bin\" BINARY:file");
  EXPECT_THAT(run({"image.cue"}).out, HasSubstr("Put it beside the sheet"));
}

TEST_F(SecondSheetTest, IsNotTroubledByTheNameWhereSheetAndImageCannotShareOne) {
  write("named other.bin:file");
  EXPECT_THAT(run({"image.cue"}).out, HasSubstr("[image-named-otherwise]"));
  writeFile(m_folder / "other.cue", "");
  EXPECT_EQ(run({"image.cue"}).out.find("image-named-otherwise"), std::string::npos);
  EXPECT_EQ(run({"image.cue", "--for", "libcdio"}).status, 1);
}

TEST_F(SecondSheetTest, SpeaksOfUtf16AsTheFirstReason) {
  std::string wide = "\xFF\xFE";
  for (const char c : std::string("FILE \"image.bin\" BINARY\r\nTRACK 01 AUDIO\r\n"))
    (wide += c) += '\0';
  writeFile(m_folder / "image.cue", wide);
  EXPECT_EQ(run({"image.cue"}).out.rfind("error [not-a-text] the sheet is UTF-16", 0), 0u);
}

}  // namespace
}  // namespace velmor::check::test
