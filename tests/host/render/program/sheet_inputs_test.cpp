// A cue sheet and its audio as an input, inputs that make one track, and remarks of the date.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/host/render/program/program.h"

namespace render_test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// "00 00:10:00" of each INDEX line of a sheet, in its order.
std::vector<std::string> indicesOf(const std::string& sheet) {
  const std::string command = "    INDEX ";
  std::vector<std::string> found;
  for (size_t at = sheet.find(command); at != std::string::npos; at = sheet.find(command, at + 1))
    found.push_back(sheet.substr(at + command.size(), 11));
  return found;
}

TEST(ASheetAsAnInput, BringsItsAlbumBack) {
  const Scratch folder;
  writeWav(folder / "a.wav", 5, 1);
  writeWav(folder / "b.wav", 6, 2);
  ASSERT_EQ(render({folder / "a.wav", folder / "b.wav", "--title", "Disc", "--performer", "Band",
                    "--catalog", "0731452345622", "--marker", "5=PERF=Guest", "--marker",
                    "5=ISRC=USABC2600002", "-o", folder / "album"})
                .status,
            0);
  const Ended again = render({folder / "album.cue", "-o", folder / "again"});
  EXPECT_EQ(again.err, "");
  EXPECT_TRUE(readFile(folder / "again.bin") == readFile(folder / "album.bin"));
  std::string sheet = readFile(folder / "album.cue");
  sheet.replace(sheet.find("album.bin"), 9, "again.bin");
  EXPECT_EQ(readFile(folder / "again.cue"), sheet);
}

TEST(ASheetAsAnInput, GoesWithOthersBeforeAndBehindIt) {
  const Scratch folder;
  const std::vector<int16_t> a = writeWav(folder / "a.wav", 5, 1);
  const std::vector<int16_t> b = writeWav(folder / "b.wav", 10, 2);
  const std::vector<int16_t> c = writeWav(folder / "c.wav", 5, 3);
  const std::vector<int16_t> d = writeWav(folder / "d.wav", 5, 4);
  writeFile(folder / "bc.cue",
            "FILE \"b.wav\" WAVE\n  TRACK 01 AUDIO\n    TITLE \"B1\"\n    INDEX 01 00:00:00\n"
            "  TRACK 02 AUDIO\n    TITLE \"B2\"\n    INDEX 01 00:05:00\n"
            "FILE \"c.wav\" WAVE\n  TRACK 03 AUDIO\n    TITLE \"C\"\n    INDEX 01 00:00:00\n");
  const Ended ended = render({folder / "a.wav", folder / "bc.cue", folder / "d.wav", "--isrc",
                              "3=USABC2600004", "-o", folder / "album"});
  ASSERT_EQ(ended.status, 0) << ended.err;
  EXPECT_TRUE(readFile(folder / "album.bin") == asImage(a) + asImage(b) + asImage(c) + asImage(d));
  EXPECT_EQ(readFile(folder / "album.cue"),
            "FILE \"album.bin\" BINARY\r\n"
            "  TRACK 01 AUDIO\r\n    TITLE \"a\"\r\n    INDEX 01 00:00:00\r\n"
            "  TRACK 02 AUDIO\r\n    TITLE \"B1\"\r\n    INDEX 01 00:05:00\r\n"
            "  TRACK 03 AUDIO\r\n    TITLE \"B2\"\r\n    INDEX 01 00:10:00\r\n"
            "  TRACK 04 AUDIO\r\n    TITLE \"C\"\r\n    INDEX 01 00:15:00\r\n"
            "  TRACK 05 AUDIO\r\n    TITLE \"d\"\r\n    ISRC \"USABC2600004\"\r\n"
            "    INDEX 01 00:20:00\r\n");
}

/// Three tracks of an image of 30 seconds, each with a pause of another kind.
class PausesOfASheet : public testing::Test {
 protected:
  void SetUp() override {
    m_sound = asImage(writeWav(m_folder / "sound.wav", 30, 1));
    writeFile(m_folder / "in.cue",
              "FILE \"sound.wav\" WAVE\n"
              "  TRACK 01 AUDIO\n    TITLE \"One\"\n    INDEX 00 00:00:00\n    INDEX 01 00:03:00\n"
              "  TRACK 02 AUDIO\n    TITLE \"Two\"\n    PREGAP 00:01:30\n    INDEX 01 00:10:00\n"
              "    POSTGAP 00:00:50\n"
              "  TRACK 03 AUDIO\n    TITLE \"Three\"\n    INDEX 00 00:19:00\n"
              "    INDEX 01 00:20:00\n");
  }
  Ended renderSheet(const std::vector<std::string>& options) {
    std::vector<std::string> arguments = {m_folder / "in.cue", "-o", m_folder / "album"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return render(arguments);
  }
  /// The indices that the whole album has where pauses can be told one by one.
  static testing::Matcher<std::vector<std::string>> wholeAlbum() {
    return ElementsAre("00 00:00:00", "01 00:03:00", "00 00:10:00", "01 00:11:30", "00 00:21:05",
                       "01 00:22:05");
  }

  static constexpr size_t kSector = 2352, kSecond = 75 * kSector;

  Scratch m_folder;
  std::string m_sound;
};

TEST_F(PausesOfASheet, AreInTheImageAndInThePortableSheet) {
  const Ended ended = renderSheet({"--portable-cue"});
  ASSERT_EQ(ended.status, 0) << ended.err;
  EXPECT_TRUE(readFile(m_folder / "album.bin") ==
              m_sound.substr(0, 10 * kSecond) + std::string(105 * kSector, '\0') +
                  m_sound.substr(10 * kSecond, 9 * kSecond) + std::string(50 * kSector, '\0') +
                  m_sound.substr(19 * kSecond));
  EXPECT_EQ(readFile(m_folder / "album.cue"),
            "FILE \"album.bin\" BINARY\r\n"
            "  TRACK 01 AUDIO\r\n    TITLE \"One\"\r\n    INDEX 01 00:00:00\r\n"
            "  TRACK 02 AUDIO\r\n    TITLE \"Two\"\r\n    INDEX 01 00:11:30\r\n"
            "  TRACK 03 AUDIO\r\n    TITLE \"Three\"\r\n    INDEX 01 00:22:04\r\n");
  EXPECT_THAT(indicesOf(readFile(m_folder / "album.portable.cue")), wholeAlbum());
}

TEST_F(PausesOfASheet, ThatTheNewSheetCannotSayAreToldTrackByTrack) {
  EXPECT_THAT(
      renderSheet({}).err,
      HasSubstr("the pauses before tracks 1 (0:03.000), 2 (0:01.400) and 3 (0:01.000) have no "
                "INDEX 00 in the new sheet, which knows one length of lead-in for all tracks; the "
                "sheet of --portable-cue, the set of --ddp and a burned disc have them to the "
                "sector"));
}

TEST_F(PausesOfASheet, AreInTheSetForAPlant) {
  const Ended ended = renderSheet({"--ddp", m_folder / "set"});
  ASSERT_EQ(ended.status, 0) << ended.err;
  const Ended back = run(VELMOR_BINARY_DIR "/velmor-ddp",
                         {"extract", m_folder / "set", "-o", m_folder / "back.cue"});
  ASSERT_EQ(back.status, 0) << back.err;
  EXPECT_THAT(indicesOf(readFile(m_folder / "back.cue")), wholeAlbum());
}

TEST_F(PausesOfASheet, OfUnderTwoSecondsBeforeTrackOneJoinItInASet) {
  writeFile(m_folder / "in.cue",
            "FILE \"sound.wav\" WAVE\n  TRACK 01 AUDIO\n    PREGAP 00:00:32\n"
            "    INDEX 01 00:00:00\n");
  const Ended ended = renderSheet({"--ddp", m_folder / "set", "--portable-cue"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(ended.out,
              HasSubstr("the pause of track 1, 32 sectors, becomes a part of the track"));
  EXPECT_THAT(indicesOf(readFile(m_folder / "album.portable.cue")),
              ElementsAre("00 00:00:00", "01 00:00:32"));
}

TEST_F(PausesOfASheet, GoOnWhereALeadInFollows) {
  ASSERT_EQ(renderSheet({"--portable-cue", "--track-leadin", "2000"}).status, 0);
  EXPECT_THAT(readFile(m_folder / "album.portable.cue"),
              HasSubstr("    INDEX 00 00:10:00\r\n    INDEX 01 00:13:30\r\n"));
}

TEST_F(PausesOfASheet, AreCutWithTheRange) {
  ASSERT_EQ(renderSheet({"--portable-cue", "--start", "1", "--end", "0:18"}).status, 0);
  EXPECT_THAT(indicesOf(readFile(m_folder / "album.portable.cue")),
              ElementsAre("00 00:00:00", "01 00:02:00", "00 00:09:00", "01 00:10:30"));
}

TEST_F(PausesOfASheet, ThatLeaveTooLittleOfATrackAreLeftOut) {
  writeFile(m_folder / "in.cue",
            "FILE \"sound.wav\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
            "  TRACK 02 AUDIO\n    INDEX 00 00:03:00\n    INDEX 01 00:05:00\n");
  const Ended ended = renderSheet({"--portable-cue"});
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.err, HasSubstr("the pause before track 2 is left out: a track would be shorter "
                                   "than the 4 seconds that a disc asks for; the audio is kept"));
  EXPECT_THAT(readFile(m_folder / "album.portable.cue"), Not(HasSubstr("INDEX 00")));
}

TEST(ASheetAsAnInput, BringsTheLeadInsOfItsAlbumBack) {
  const Scratch folder;
  writeWav(folder / "a.wav", 5, 1);
  writeWav(folder / "b.wav", 6, 2);
  writeWav(folder / "c.wav", 7, 3);
  ASSERT_EQ(render({folder / "a.wav", folder / "b.wav", folder / "c.wav", "--disc-leadin", "3000",
                    "--track-leadin", "2000", "--performer", "Band", "--title", "Disc",
                    "--portable-cue", "-o", folder / "album"})
                .status,
            0);
  const Ended again = render({folder / "album.portable.cue", "-o", folder / "again"});
  EXPECT_EQ(again.err, "");
  EXPECT_TRUE(readFile(folder / "again.bin") == readFile(folder / "album.bin"));
  EXPECT_THAT(indicesOf(readFile(folder / "again.cue")),
              ElementsAre("00 00:00:00", "01 00:03:00", "00 00:08:00", "01 00:10:00", "00 00:16:00",
                          "01 00:18:00"));
}

TEST_F(PausesOfASheet, ThatAreEquallyLongSilencesAreInTheNewSheetToo) {
  writeFile(m_folder / "in.cue",
            "FILE \"sound.wav\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
            "  TRACK 02 AUDIO\n    PREGAP 00:02:00\n    INDEX 01 00:10:00\n"
            "  TRACK 03 AUDIO\n    PREGAP 00:02:00\n    INDEX 01 00:20:00\n");
  EXPECT_EQ(renderSheet({}).err, "");
  EXPECT_THAT(
      indicesOf(readFile(m_folder / "album.cue")),
      ElementsAre("01 00:00:00", "00 00:10:00", "01 00:12:00", "00 00:22:00", "01 00:24:00"));
  const size_t ten_seconds = 10 * kSecond;
  const std::string silence(2 * kSecond, '\0');
  const std::string image = readFile(m_folder / "album.bin");
  EXPECT_TRUE(image == m_sound.substr(0, ten_seconds) + silence +
                           m_sound.substr(ten_seconds, ten_seconds) + silence +
                           m_sound.substr(2 * ten_seconds));
  ASSERT_EQ(renderSheet({"--force", "--marker", "5=x"}).status, 0);
  EXPECT_TRUE(readFile(m_folder / "album.bin") == image) << "where they are no lead-ins either";
}

TEST_F(PausesOfASheet, ThatHoldSoundStayInTheAudio) {
  writeFile(m_folder / "in.cue",
            "FILE \"sound.wav\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
            "  TRACK 02 AUDIO\n    INDEX 00 00:08:00\n    INDEX 01 00:10:00\n");
  EXPECT_THAT(renderSheet({}).err,
              HasSubstr("the pause before track 2 (0:02.000) has no INDEX 00"));
  EXPECT_TRUE(readFile(m_folder / "album.bin") == m_sound);
}

TEST(ASheetAsAnInput, IsRefusedWithWhatIsWrongWithIt) {
  const Scratch folder;
  writeFile(folder / "data.cue",
            "FILE \"a.bin\" BINARY\n  TRACK 01 MODE1/2352\n    INDEX 01 00:00:00\n");
  writeFile(folder / "gone.cue",
            "FILE \"gone.bin\" BINARY\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n");
  const std::pair<const char*, const char*> cases[] = {
      {"data.cue", "has a data track, track 1; an audio CD has none"},
      {"gone.cue", "gone.bin\": there is no such file"},
  };
  for (const auto& [name, words] : cases) {
    const Ended ended = render({folder / name, "-o", folder / "album"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr(words));
  }
  const Ended coded =
      render({folder / "gone.cue", "--isrc", "1=USABC2600001", "-o", folder / "album"});
  EXPECT_NE(coded.status, 0);
}

TEST_F(PausesOfASheet, ThatNoDiscHasRoomForAreRefused) {
  const std::string begin = "FILE \"sound.wav\" WAVE\n  TRACK 01 AUDIO\n";
  const std::pair<std::string, const char*> cases[] = {
      {begin + "    PREGAP 99999:00:00\n    INDEX 01 00:00:00\n",
       "in.cue\" has a PREGAP of 99999:00:00 (MM:SS:FF) in track 1, but the times of a disc end at "
       "99:59:74; shorten it"},
      {begin + "    PREGAP 50:00:00\n    INDEX 01 00:00:00\n"
               "  TRACK 02 AUDIO\n    PREGAP 50:00:00\n    INDEX 01 00:10:00\n",
       "the disc would last 100:30:00 (MM:SS:FF), but the times of a disc end at 99:59:74"},
  };
  for (const auto& [sheet, words] : cases) {
    writeFile(m_folder / "in.cue", sheet);
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{}, {"--portable-cue"}, {"--ddp", m_folder / "set"}}) {
      const Ended ended = renderSheet(options);
      EXPECT_EQ(ended.status, 1);
      EXPECT_THAT(ended.err, HasSubstr(words));
      EXPECT_FALSE(std::filesystem::exists(m_folder / "album.bin"));
      EXPECT_FALSE(std::filesystem::exists(m_folder / "set"));
    }
  }
}

TEST(ASheetAsAnInput, KeepsItsOwnAudioFromBeingOverwritten) {
  const Scratch folder;
  writeWav(folder / "a.wav", 5);
  ASSERT_EQ(render({folder / "a.wav", "-o", folder / "album"}).status, 0);
  std::filesystem::rename(folder / "album.cue", folder / "other.cue");
  const std::string image = readFile(folder / "album.bin");
  const Ended ended = render({folder / "other.cue", "--force", "-o", folder / "album"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.err, HasSubstr("is one of the inputs and would be overwritten"));
  EXPECT_TRUE(readFile(folder / "album.bin") == image);
}

class Joined : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* const name : {"a", "b", "c"}) {
      writeAudio(m_folder / (std::string(name) + ".flac"), SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 44100,
                 2, noise(44100 * 5, 2), {name, name});
    }
  }
  Ended renderAll(const std::vector<std::string>& options) {
    std::vector<std::string> arguments = {m_folder / "a.flac", m_folder / "b.flac",
                                          m_folder / "c.flac", "--force"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.insert(arguments.end(), {"-o", m_folder / "album"});
    return render(arguments);
  }
  std::string sheet() const { return readFile(m_folder / "album.cue"); }
  Scratch m_folder;
};

TEST_F(Joined, InputsMakeOneTrack) {
  const Ended ended = renderAll({"--join"});
  EXPECT_EQ(ended.err, "");
  EXPECT_EQ(sheet(),
            "FILE \"album.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n    TITLE \"a\"\r\n"
            "    PERFORMER \"a\"\r\n    INDEX 01 00:00:00\r\n");
  EXPECT_EQ(readFile(m_folder / "album.bin").size(), 15U * 176400U);
}

TEST_F(Joined, SomeInputsMakeOneTrackAndTheOthersTheirOwn) {
  EXPECT_EQ(renderAll({"--join=2-3"}).err, "");
  EXPECT_THAT(sheet(), AllOf(HasSubstr("TITLE \"b\"\r\n    PERFORMER \"b\"\r\n"
                                       "    INDEX 01 00:05:00\r\n"),
                             Not(HasSubstr("TRACK 03"))));
  EXPECT_EQ(renderAll({"--join=1-2", "--track-mode", "regions"}).status, 0);
  EXPECT_THAT(sheet(), AllOf(HasSubstr("INDEX 01 00:10:00"), Not(HasSubstr("TRACK 03"))));
}

TEST_F(Joined, InputsAreStillCutByMarks) {
  EXPECT_EQ(renderAll({"--join", "--marker", "7=cut"}).err, "");
  EXPECT_THAT(sheet(), HasSubstr("TITLE \"cut\"\r\n    INDEX 01 00:07:00\r\n"));
}

TEST_F(Joined, ARangeThatIsNoneIsRefused) {
  for (const char* const range : {"3-4", "0-2", "2-2", "3-2", "2", "x", "1-2-3", "-"}) {
    const Ended ended = renderAll({std::string("--join=") + range});
    EXPECT_EQ(ended.status, 2) << range;
    EXPECT_THAT(ended.err, HasSubstr("is no range of the 3 inputs"));
  }
}

TEST(TheDateAndGenreOfTheInputs, AreRemarksOfThePortableSheet) {
  const Scratch folder;
  for (const char* const name : {"a.flac", "b.flac"}) {
    ASSERT_TRUE(writeAudio(folder / name, SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 44100, 2,
                           noise(44100 * 5, 2), {name, "Ana", "Disc", "2026-11-01", "Jazz \"x\""}));
  }
  const Ended ended =
      render({folder / "a.flac", folder / "b.flac", "--portable-cue", "-o", folder / "album"});
  EXPECT_EQ(ended.status, 0) << ended.err;
  EXPECT_THAT(readFile(folder / "album.portable.cue"),
              StartsWith("REM GENRE \"Jazz 'x'\"\r\nREM DATE 2026-11-01\r\nTITLE \"Disc\"\r\n"));
  EXPECT_THAT(ended.out, HasSubstr("album.portable.cue: ready, 0 errors"));
  EXPECT_THAT(readFile(folder / "album.cue"), Not(HasSubstr("REM")));
  writeWav(folder / "c.wav", 5);
  ASSERT_EQ(render({folder / "a.flac", folder / "c.wav", "--portable-cue", "--force", "-o",
                    folder / "album"})
                .status,
            0);
  EXPECT_THAT(readFile(folder / "album.portable.cue"), Not(HasSubstr("REM")))
      << "not all inputs say so";
}

}  // namespace
}  // namespace render_test
