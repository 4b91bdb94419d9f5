// Markers, regions, labels, texts and codes, from the command line to the sheet.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/host/render/program/program.h"

namespace render_test {
namespace {

using testing::HasSubstr;
using testing::Not;

/// Renders ten seconds of noise twice over and answers the sheet.
class Marks : public testing::Test {
 protected:
  void SetUp() override {
    writeWav(m_folder / "one.wav", 10, 1);
    writeWav(m_folder / "two.wav", 10, 2);
  }
  std::string sheet(std::vector<std::string> options) {
    std::vector<std::string> arguments = {m_folder / "one.wav", m_folder / "two.wav", "--force",
                                          "-o", m_folder / "album.cue"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    m_ended = render(arguments);
    EXPECT_EQ(m_ended.status, 0) << m_ended.err;
    return readFile(m_folder / "album.cue");
  }

  Scratch m_folder;
  Ended m_ended;
};

TEST_F(Marks, NothingIsLoggedInNormalUse) {
  sheet({"--track-leadin", "2000"});
  EXPECT_EQ(m_ended.err, "");
}

TEST_F(Marks, EachInputBeginsATrackThatBearsItsName) {
  EXPECT_EQ(sheet({}),
            "FILE \"album.bin\" BINARY\r\n"
            "  TRACK 01 AUDIO\r\n    TITLE \"one\"\r\n    INDEX 01 00:00:00\r\n"
            "  TRACK 02 AUDIO\r\n    TITLE \"two\"\r\n    INDEX 01 00:10:00\r\n");
}

TEST_F(Marks, MarkersCutFurtherAndTimesComeInThreeForms) {
  const std::string text =
      sheet({"--marker", "5=a", "--marker", "00:14.500=b=c", "--marker", "00:19:00=late"});
  EXPECT_THAT(text, HasSubstr("TITLE \"a\"\r\n    INDEX 01 00:05:00"));
  EXPECT_THAT(text, HasSubstr("TITLE \"b=c\"\r\n    INDEX 01 00:14:37"));
  EXPECT_THAT(text, HasSubstr("TITLE \"late\"\r\n    INDEX 01 00:19:00"));
}

TEST_F(Marks, AMarkerWithinAFrameOfAnInputsStartTakesItsPlace) {
  const std::string text = sheet({"--marker", "10.00001=mine"});
  EXPECT_THAT(text, HasSubstr("TITLE \"mine\"\r\n    INDEX 01 00:10:00"));
  EXPECT_THAT(text, Not(HasSubstr("two")));
}

TEST_F(Marks, TagMarkersGiveTheTrackItsTextsAndCode) {
  const std::string text = sheet(
      {"--marker", "3=PERF=Ana", "--marker", "12=isrc=USABC2600001", "--marker", "13=WRIT=Bo"});
  EXPECT_THAT(text, HasSubstr("TITLE \"one\"\r\n    PERFORMER \"Ana\""));
  EXPECT_THAT(text,
              HasSubstr("TITLE \"two\"\r\n    ISRC \"USABC2600001\"\r\n    SONGWRITER \"Bo\""));
}

TEST_F(Marks, OnlyHashMarkersCountWhereThatIsAsked) {
  const std::string text =
      sheet({"--hash-markers-only", "--marker", "5=a", "--marker", "15=#last"});
  EXPECT_THAT(text, Not(HasSubstr("\"a\"")));
  EXPECT_THAT(text, Not(HasSubstr("\"two\"")));
  EXPECT_THAT(text, HasSubstr("TITLE \"last\"\r\n    INDEX 01 00:15:00"));
}

TEST_F(Marks, RegionsModeKeepsTheInputsAsRegionsOrTheRegionsGiven) {
  EXPECT_THAT(sheet({"--track-mode", "regions"}),
              HasSubstr("TITLE \"two\"\r\n    INDEX 01 00:10:00"));
  const std::string text =
      sheet({"--track-mode", "regions", "--region", "1-6=A", "--region", "12-00:17.000=B"});
  EXPECT_EQ(text,
            "FILE \"album.bin\" BINARY\r\n"
            "  TRACK 01 AUDIO\r\n    TITLE \"A\"\r\n    INDEX 01 00:00:00\r\n"
            "  TRACK 02 AUDIO\r\n    TITLE \"B\"\r\n    INDEX 01 00:05:00\r\n");
  EXPECT_EQ(readFile(m_folder / "album.bin").size(), 10U * 176400U);
}

TEST_F(Marks, RegionsWithoutAudioOfTheirOwnAreLeftOut) {
  const std::string text = sheet({"--track-mode", "regions", "--region", "1-6=A", "--region",
                                  "2-6=inner", "--region", "8-8.000001=dust"});
  EXPECT_THAT(text, Not(HasSubstr("inner")));
  EXPECT_THAT(m_ended.err,
              HasSubstr("\"inner\" (--region) and \"dust\" (--region) make no tracks"));
  EXPECT_THAT(m_ended.err, HasSubstr("there is no audio in it"));
}

TEST_F(Marks, OneTrackModeMakesOneTrack) {
  EXPECT_EQ(sheet({"--track-mode", "one", "--marker", "5=a"}),
            "FILE \"album.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n    INDEX 01 00:00:00\r\n");
}

TEST_F(Marks, OneTrackBearsTheIsrcOfTheInputItBeginsIn) {
  EXPECT_EQ(sheet({"--track-mode", "one", "--isrc", "1=USABC2600001", "--isrc", "2=USABC2600002",
                   "--start", "12"}),
            "FILE \"album.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n    ISRC \"USABC2600002\"\r\n"
            "    INDEX 01 00:00:00\r\n");
  EXPECT_EQ(m_ended.err, "");
}

TEST_F(Marks, ALabelTrackCutsAndSaysWhichLinesItCannotUse) {
  writeFile(m_folder / "labels.txt", "4.5\t4.5\tA\r\nnonsense\r\n15\t15\tB\r\n");
  const std::string text = sheet({"--labels", m_folder / "labels.txt"});
  EXPECT_THAT(text, HasSubstr("TITLE \"A\"\r\n    INDEX 01 00:04:37"));
  EXPECT_THAT(text, HasSubstr("TITLE \"B\"\r\n    INDEX 01 00:15:00"));
  EXPECT_THAT(m_ended.err, HasSubstr("line 2 of \"" + m_folder / "labels.txt" + "\""));
}

TEST_F(Marks, OnesBeyondTheAudioAreNamedWithWhoGaveThem) {
  const std::string labels = m_folder / "labels.txt";
  writeFile(labels, "4\t4\tA\n\n60\t60\tB\n");
  sheet({"--labels", labels, "--marker", "70=C", "--track-leadin", "2000", "--end", "30"});
  EXPECT_EQ(
      m_ended.err,
      "velmor-render: warning: --end lies at 0:30.000, but the inputs end at 0:20.000, and so "
      "does the render\n"
      "velmor-render: warning: \"B\" (line 3 of \"" +
          labels +
          "\") and \"C\" (--marker) lie beyond the end of the audio at 0:20.000 and are left "
          "out; look at the times\n");
  sheet({"--region", "70-80=R", "--track-mode", "regions"});
  EXPECT_THAT(m_ended.err, HasSubstr("\"R\" (--region) lies beyond"));
}

TEST_F(Marks, ThousandsOfLabelsAreRefusedAsTracksAndTakenAsTags) {
  std::string labels;
  for (int i = 0; i < 10000; ++i) {
    labels += std::to_string(i / 1000.0) + "\t" + std::to_string(i / 1000.0) + "\tWRIT=x\n";
  }
  writeFile(m_folder / "many.txt", labels);
  EXPECT_THAT(sheet({"--labels", m_folder / "many.txt"}), HasSubstr("SONGWRITER \"x\""));
}

TEST_F(Marks, TheDiscsTextsAndCodesComeFromTheOptions) {
  const std::string text =
      sheet({"--title", "T", "--performer", "P", "--songwriter", "W", "--catalog", "0731452345622",
             "--comment", "C", "--isrc", "2=us-abc-26-00002"});
  EXPECT_THAT(text, HasSubstr("REM \"C\"\r\nTITLE \"T\"\r\nPERFORMER \"P\"\r\nSONGWRITER \"W\"\r\n"
                              "CATALOG \"0731452345622\"\r\nFILE"));
  EXPECT_THAT(text, HasSubstr("TITLE \"two\"\r\n    ISRC \"USABC2600002\""));
}

TEST_F(Marks, MetaFieldsReachTheModule) {
  EXPECT_THAT(sheet({"--meta", "TITLE=via meta"}), HasSubstr("TITLE \"via meta\"\r\nFILE"));
}

TEST_F(Marks, TextsThatWouldBreakTheSheetAreMended) {
  const std::string text = sheet({"--title", "a \"b\"\nc\\"});
  EXPECT_THAT(text, HasSubstr("TITLE \"a 'b' c/\"\r\nFILE"));
  EXPECT_THAT(m_ended.err, HasSubstr("would break the sheet"));
}

TEST(Tags, TitleArtistAndAlbumFillWhatIsNotGiven) {
  const Scratch folder;
  writeWav(folder / "1.wav", 5, 1, {"First", "Ana", "Album"});
  writeWav(folder / "2.wav", 5, 2, {"Second", "Ana", "Album"});
  ASSERT_EQ(render({folder / "1.wav", folder / "2.wav", "-o", folder / "same"}).status, 0);
  EXPECT_THAT(readFile(folder / "same.cue"),
              HasSubstr("TITLE \"Album\"\r\nPERFORMER \"Ana\"\r\nFILE"));
  EXPECT_THAT(readFile(folder / "same.cue"), Not(HasSubstr("    PERFORMER")));
  writeWav(folder / "3.wav", 5, 3, {"Third", "Bo", "Album"});
  ASSERT_EQ(render({folder / "1.wav", folder / "3.wav", "-o", folder / "various"}).status, 0);
  EXPECT_THAT(readFile(folder / "various.cue"),
              HasSubstr("TITLE \"Third\"\r\n    PERFORMER \"Bo\""));
}

TEST(Range, TheMarkerInForceAtTheStartMovesToIt) {
  const Scratch folder;
  const std::vector<int16_t> samples = writeWav(folder / "a.wav", 20);
  const Ended ended = render({folder / "a.wav", "--marker", "6=six", "--marker", "14=fourteen",
                              "--start", "8", "--end", "00:19.000", "-o", folder / "album"});
  ASSERT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(readFile(folder / "album.cue"),
            "FILE \"album.bin\" BINARY\r\n"
            "  TRACK 01 AUDIO\r\n    TITLE \"six\"\r\n    INDEX 01 00:00:00\r\n"
            "  TRACK 02 AUDIO\r\n    TITLE \"fourteen\"\r\n    INDEX 01 00:06:00\r\n");
  EXPECT_TRUE(readFile(folder / "album.bin") == asImage(samples).substr(8 * 176400, 11 * 176400));
}

TEST(Range, AMarkerWithinFourSecondsOfTheStartMakesNoTrackAndIsNamed) {
  const Scratch folder;
  writeWav(folder / "a.wav", 20);
  const Ended ended =
      render({folder / "a.wav", "--marker", "6=six", "--marker", "00:11:74=close", "--marker",
              "12=twelve", "--start", "8", "--json", "-o", folder / "album"});
  EXPECT_EQ(ended.err,
            "velmor-render: warning: \"close\" (--marker) makes no track: within 4 seconds of a "
            "track's start there is no other track\n");
  const nlohmann::json tracks = nlohmann::json::parse(ended.out)["tracks"];
  ASSERT_EQ(tracks.size(), 2U);
  EXPECT_EQ(tracks[0]["title"], "six");
  EXPECT_EQ(tracks[1]["title"], "twelve");
  EXPECT_EQ(tracks[1]["start_seconds"], 4.0);
  EXPECT_EQ(readFile(folder / "album.cue"),
            "FILE \"album.bin\" BINARY\r\n"
            "  TRACK 01 AUDIO\r\n    TITLE \"six\"\r\n    INDEX 01 00:00:00\r\n"
            "  TRACK 02 AUDIO\r\n    TITLE \"twelve\"\r\n    INDEX 01 00:04:00\r\n");
}

TEST(Json, HasTheFateOfEveryMark) {
  const Scratch folder;
  writeWav(folder / "a.wav", 20);
  writeFile(folder / "labels.txt", "1\t6\trange\n90\t90\tlate\n");
  const Ended ended =
      render({folder / "a.wav", "--labels", folder / "labels.txt", "--marker", "10=ten", "--marker",
              "12=near", "--marker", "11=PERF=Ana", "--marker", "11.5=perf=Bo", "--marker",
              "11.5=WRIT=Bo", "--json", "-o", folder / "album"});
  ASSERT_EQ(ended.status, 0) << ended.err;
  std::vector<std::string> fates;
  const nlohmann::json report = nlohmann::json::parse(ended.out);
  for (const nlohmann::json& mark : report["marks"]) {
    fates.push_back(mark["name"].get<std::string>() + " " + mark["fate"].get<std::string>() +
                    (mark.contains("track") ? " " + std::to_string(mark["track"].get<int>()) : "") +
                    (mark.contains("why") ? ": " + mark["why"].get<std::string>() : ""));
  }
  EXPECT_THAT(fates, testing::ElementsAre(
                         "a track 1", testing::StartsWith("range none: where markers make tracks"),
                         "ten track 2", "PERF=Ana tag 2",
                         "perf=Bo none: another of its kind stands before it in track 2",
                         "WRIT=Bo tag 2", testing::StartsWith("near none: within 4"),
                         "late none: outside the part that is rendered"));
}

TEST(Isrc, OneThatDoesNotReachItsTrackIsNamed) {
  const Scratch folder;
  writeWav(folder / "intro.wav", 3, 1);
  writeWav(folder / "song.wav", 10, 2);
  const std::vector<std::string> both = {folder / "intro.wav", folder / "song.wav", "--force", "-o",
                                         folder / "album"};
  const auto warnings = [&](std::vector<std::string> options) {
    options.insert(options.end(), both.begin(), both.end());
    return render(options).err;
  };
  EXPECT_THAT(warnings({"--isrc", "1=USABC2600001", "--isrc", "2=USABC2600002"}),
              HasSubstr("the ISRC \"USABC2600002\" (track 1) is left out"));
  EXPECT_THAT(readFile(folder / "album.cue"), HasSubstr("ISRC \"USABC2600001\""));
  EXPECT_THAT(warnings({"--isrc", "2=USABC2600002"}),
              HasSubstr("the ISRC \"USABC2600002\" of input 2 goes to track 1"));
  EXPECT_THAT(
      warnings({"--track-mode", "one", "--isrc", "1=USABC2600001", "--isrc", "2=USABC2600002"}),
      HasSubstr("the ISRC \"USABC2600002\" (track 1) is left out"));
}

TEST(Range, ARegionThatItCutsKeepsItsInputsCode) {
  const Scratch folder;
  const std::vector<int16_t> samples = writeWav(folder / "a.wav", 20);
  const Ended ended = render({folder / "a.wav", "--track-mode", "regions", "--region", "2-12=R",
                              "--isrc", "1=USABC2600001", "--start", "3", "-o", folder / "album"});
  ASSERT_EQ(ended.status, 0) << ended.err;
  EXPECT_EQ(readFile(folder / "album.cue"),
            "FILE \"album.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n    TITLE \"R\"\r\n"
            "    ISRC \"USABC2600001\"\r\n    INDEX 01 00:00:00\r\n");
  EXPECT_TRUE(readFile(folder / "album.bin") == asImage(samples).substr(3 * 176400, 9 * 176400));
}

TEST(Json, HoldsTheTrackListAndTheFiles) {
  const Scratch folder;
  writeWav(folder / "one.wav", 6, 1);
  writeWav(folder / "two.wav", 6, 2);
  const Ended ended = render({folder / "one.wav", folder / "two.wav", "--json", "--disc-leadin",
                              "500", "--isrc", "1=USABC2600001", "-o", folder / "album.cue"});
  ASSERT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.out, testing::StartsWith("{\n  \"")) << "a line each, indented by two";
  const nlohmann::json json = nlohmann::json::parse(ended.out);
  EXPECT_EQ(json["schema_version"], 1);
  EXPECT_EQ(json["tracks"].size(), 2U);
  EXPECT_EQ(json["tracks"][0]["title"], "one");
  EXPECT_EQ(json["tracks"][0]["isrc"], "USABC2600001");
  EXPECT_EQ(json["tracks"][0]["start_sector"], 38);
  EXPECT_EQ(json["tracks"][1]["start_seconds"].get<double>(), 38 / 75.0 + 6.0);
  EXPECT_EQ(json["image"]["bytes"], readFile(folder / "album.bin").size());
  EXPECT_EQ(json["sheet"]["bytes"], readFile(folder / "album.cue").size());
  EXPECT_TRUE(json["warnings"].is_array());
}

TEST(Json, TellsOfAFailureToo) {
  const Ended ended = render({"/nowhere/a.wav", "--json", "-o", "/tmp/never"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(nlohmann::json::parse(ended.out)["error"].get<std::string>(), HasSubstr("a.wav"));
}

}  // namespace
}  // namespace render_test
