// Tags and marks as whole files carry them.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "tests/host/render/input/sound_files.h"

namespace velmor::render::test {
namespace {

constexpr std::array<CuePoint, 3> kPoints{CuePoint{2, 88200}, CuePoint{1, 44100},
                                          CuePoint{5, 22050}};
constexpr size_t kMarkedFrames = 100000;

std::string listChunk() {
  return riffChunk("LIST",
                   "adtl" + label(1, "Second song") + region(2, 5000, "") + label(2, "Region"));
}

void expectTheMarks(const std::vector<Mark>& marks, const std::string& what) {
  ASSERT_EQ(marks.size(), 3U) << what;
  EXPECT_DOUBLE_EQ(marks[0].start, 0.5) << what;
  EXPECT_EQ(marks[0].name, "") << what;
  EXPECT_FALSE(marks[0].end) << what;
  EXPECT_DOUBLE_EQ(marks[1].start, 1.0) << what;
  EXPECT_EQ(marks[1].name, "Second song") << what;
  EXPECT_FALSE(marks[1].end) << what;
  EXPECT_DOUBLE_EQ(marks[2].start, 2.0) << what;
  EXPECT_EQ(marks[2].name, "Region") << what;
  ASSERT_TRUE(marks[2].end) << what;
  EXPECT_DOUBLE_EQ(*marks[2].end, 93200.0 / 44100.0) << what;
}

TEST(EmbeddedMarks, AreFoundInEveryOrderOfTheChunks) {
  const Folder folder;
  struct Piece {
    std::string name, chunk;
  };
  std::vector<Piece> pieces{{"cue ", riffChunk("cue ", cueBody(kPoints))},
                            {"data ", dataChunk(kMarkedFrames)},
                            {"info ", riffChunk("LIST", "INFO" + riffChunk("INAM", "Song"))},
                            {"list ", listChunk()}};
  const auto by_name = [](const Piece& a, const Piece& b) { return a.name < b.name; };
  do {
    std::string chunks = formatChunk();
    std::string order;
    for (const Piece& piece : pieces) {
      chunks += piece.chunk;
      order += piece.name;
    }
    const auto input = AudioInput::open(folder.write("a.wav", riffFile(chunks)), Dither::kNone);
    EXPECT_EQ(input->info().frames, static_cast<int64_t>(kMarkedFrames)) << order;
    EXPECT_EQ(input->info().tags.title, "Song") << order;
    expectTheMarks(input->info().marks, order);
    EXPECT_EQ(readAll(*input, 4096).left.size(), kMarkedFrames) << order;
  } while (std::next_permutation(pieces.begin(), pieces.end(), by_name));
}

TEST(EmbeddedMarks, TellWhichNamesWereConverted) {
  const Folder folder;
  const std::array<CuePoint, 2> points{CuePoint{1, 100}, CuePoint{2, 200}};
  const std::string chunks = formatChunk() + dataChunk(1000) + riffChunk("cue ", cueBody(points)) +
                             riffChunk("LIST", "adtl" + label(1, "Intro") + label(2, "Caf\xe9"));
  const auto input = AudioInput::open(folder.write("a.wav", riffFile(chunks)), Dither::kNone);
  ASSERT_EQ(input->info().marks.size(), 2U);
  EXPECT_EQ(input->info().marks[1].name, "Caf\xc3\xa9");
  EXPECT_EQ(input->info().tags.converted, std::vector<std::string>{"Caf\xc3\xa9"});
}

// There the next input begins, whose track it would name.
TEST(EmbeddedMarks, AtTheEndOfTheFileAreLeftOut) {
  const Folder folder;
  const std::array<CuePoint, 2> points{CuePoint{1, 999}, CuePoint{2, 1000}};
  const std::string chunks = formatChunk() + dataChunk(1000) + riffChunk("cue ", cueBody(points)) +
                             riffChunk("LIST", "adtl" + label(2, "End"));
  const auto input = AudioInput::open(folder.write("a.wav", riffFile(chunks)), Dither::kNone);
  ASSERT_EQ(input->info().marks.size(), 1U);
  EXPECT_DOUBLE_EQ(input->info().marks[0].start, 999.0 / 44100.0);
}

TEST(EmbeddedMarks, BehindTheLastFrameAreLeftOutAndRegionsEndWithIt) {
  const Folder folder;
  const std::array<CuePoint, 3> points{CuePoint{1, 500}, CuePoint{2, 998}, CuePoint{3, 1001}};
  const std::string chunks =
      formatChunk() + dataChunk(1000) + riffChunk("cue ", cueBody(points)) +
      riffChunk("LIST", "adtl" + region(1, 0xffffffffU, "") + region(2, 10, ""));
  const auto input = AudioInput::open(folder.write("a.wav", riffFile(chunks)), Dither::kNone);
  const std::vector<Mark>& marks = input->info().marks;
  ASSERT_EQ(marks.size(), 2U);
  ASSERT_TRUE(marks[0].end);
  EXPECT_DOUBLE_EQ(*marks[0].end, 1000.0 / 44100.0);
  EXPECT_DOUBLE_EQ(marks[1].start, 998.0 / 44100.0);
  ASSERT_TRUE(marks[1].end);
  EXPECT_DOUBLE_EQ(*marks[1].end, 1000.0 / 44100.0);
}

TEST(EmbeddedMarks, CountFramesOfTheFileNotOfTheDisc) {
  const Folder folder;
  const std::array<CuePoint, 1> points{CuePoint{1, 24000}};
  const std::string format = riffChunk("fmt ", little16(1) + little16(2) + little32(48000) +
                                                   little32(192000) + little16(4) + little16(16));
  const auto input = AudioInput::open(
      folder.write("a.wav",
                   riffFile(format + riffChunk("cue ", cueBody(points)) + dataChunk(48000))),
      Dither::kNone);
  ASSERT_EQ(input->info().marks.size(), 1U);
  EXPECT_DOUBLE_EQ(input->info().marks[0].start, 0.5);
}

TEST(EmbeddedMarks, ThatAreDamagedAreNoError) {
  const Folder folder;
  for (const std::string& cue : {riffChunk("cue ", ""), riffChunk("cue ", little32(0xffffffffU)),
                                 riffChunk("cue ", little32(2) + std::string(24, '\0'))}) {
    const auto input = AudioInput::open(
        folder.write("a.wav", riffFile(formatChunk() + dataChunk(100) + cue)), Dither::kNone);
    EXPECT_TRUE(input->info().marks.empty());
    EXPECT_EQ(readAll(*input, 64).left.size(), 100U);
  }
}

std::string bigChunk(const std::string& id, const std::string& body) {
  return id + big32(static_cast<uint32_t>(body.size())) + body +
         (body.size() % 2 != 0 ? std::string(1, '\0') : "");
}

std::string pascal(const std::string& text) {
  std::string bytes = static_cast<char>(text.size()) + text;
  if (bytes.size() % 2 != 0) bytes += '\0';
  return bytes;
}

TEST(EmbeddedMarks, OfAiffFilesAreRead) {
  const Folder folder;
  const std::string rate44100("\x40\x0e\xac\x44\0\0\0\0\0\0", 10);  // 80-bit floating point
  const std::string common = big16(2) + big32(1000) + big16(16) + rate44100;
  const std::string marks = big16(2) + big16(1) + big32(700) + pascal("Late") + big16(2) +
                            big32(441) + pascal("Early one");
  const std::string sound = big32(0) + big32(0) + std::string(4000, '\0');
  for (const bool marks_first : {true, false}) {
    std::string body = "AIFF" + bigChunk("COMM", common);
    if (marks_first) body += bigChunk("MARK", marks);
    body += bigChunk("SSND", sound);
    if (!marks_first) body += bigChunk("MARK", marks);
    const auto input =
        AudioInput::open(folder.write("a.aiff", bigChunk("FORM", body)), Dither::kNone);
    const std::vector<Mark>& found = input->info().marks;
    ASSERT_EQ(found.size(), 2U) << marks_first;
    EXPECT_DOUBLE_EQ(found[0].start, 0.01);
    EXPECT_EQ(found[0].name, "Early one");
    EXPECT_DOUBLE_EQ(found[1].start, 700.0 / 44100.0);
    EXPECT_EQ(found[1].name, "Late");
  }
}

std::string foreign(const std::string& chunk) {
  return flacBlock(2, "riff" + chunk);
}

// As the encoder stores what a WAV file holds beside its audio.
TEST(EmbeddedMarks, OfAWavFileSurviveInAFlacFile) {
  const Folder folder;
  const std::string cue = foreign(riffChunk("cue ", cueBody(kPoints)));
  std::string wave = foreign("RIFF" + little32(99) + "WAVE");
  wave += cue;
  wave += foreign(riffChunk("LIST", "INFO" + riffChunk("INAM", "Song")));
  wave += foreign(listChunk());
  std::string strange = foreign(listChunk());
  strange += flacBlock(2, "othr" + riffChunk("cue ", little32(0)));
  strange += flacBlock(2, "riffcue ");
  strange += cue;
  for (const std::string& blocks : {wave, strange}) {
    const auto input = AudioInput::open(
        folder.write("a.flac", flacFile(folder, kMarkedFrames, blocks)), Dither::kNone);
    expectTheMarks(input->info().marks, "FLAC");
    EXPECT_EQ(readAll(*input, 4096).left.size(), kMarkedFrames);
  }
}

TEST(EmbeddedMarks, InAFlacFileThatAreDamagedAreNoError) {
  const Folder folder;
  std::string huge = riffChunk("cue ", cueBody(kPoints).substr(0, 50));
  huge.replace(4, 4, 4, '\xff');
  for (const std::string& chunk :
       {riffChunk("cue ", ""), riffChunk("cue ", little32(9)), huge, std::string("cue ")}) {
    const auto input = AudioInput::open(
        folder.write("a.flac", flacFile(folder, kMarkedFrames, foreign(chunk))), Dither::kNone);
    EXPECT_TRUE(input->info().marks.empty());
  }
}

TEST(Tags, ComeFromEveryKindOfFileThatHasThem) {
  const Folder folder;
  for (const int format : {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16,
                           SF_FORMAT_OGG | SF_FORMAT_VORBIS, SF_FORMAT_RF64 | SF_FORMAT_PCM_16,
                           SF_FORMAT_CAF | SF_FORMAT_PCM_16}) {
    const std::string path = folder.path("a");
    SF_INFO info{};
    info.format = format;
    info.samplerate = 44100;
    info.channels = 2;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    ASSERT_TRUE(file);
    sf_set_string(file, SF_STR_TITLE, "Caf\xc3\xa9");
    sf_set_string(file, SF_STR_ARTIST, "The Players");
    sf_set_string(file, SF_STR_ALBUM, "Live");
    const std::vector<int16_t> samples(2000);
    sf_write_short(file, samples.data(), 2000);
    ASSERT_EQ(sf_close(file), 0);
    const Tags tags = AudioInput::open(path, Dither::kNone)->info().tags;
    EXPECT_EQ(tags.title, "Caf\xc3\xa9") << std::hex << format;
    EXPECT_EQ(tags.artist, "The Players") << std::hex << format;
    EXPECT_EQ(tags.album, "Live") << std::hex << format;
    EXPECT_EQ(tags.isrc, "");
  }
}

TEST(Tags, AreUtf8OnOneLine) {
  const Folder folder;
  const std::string info =
      riffChunk("LIST", "INFO" + riffChunk("INAM", std::string("Caf\xe9\0", 5)) +
                            riffChunk("IART", std::string("A\r\nB  \0", 7)));
  const auto input = AudioInput::open(
      folder.write("a.wav", riffFile(formatChunk() + info + dataChunk(10))), Dither::kNone);
  EXPECT_EQ(input->info().tags.title, "Caf\xc3\xa9");
  EXPECT_EQ(input->info().tags.artist, "A  B");
  EXPECT_EQ(input->info().tags.album, "");
}

TEST(Tags, ThatAreNotUtf8AreReadAsWindows1252) {
  const Folder folder;
  const std::string info = riffChunk("LIST", "INFO" + riffChunk("INAM", "\x93Yes\x94 \x80"));
  const auto input = AudioInput::open(
      folder.write("a.wav", riffFile(formatChunk() + info + dataChunk(10))), Dither::kNone);
  EXPECT_EQ(input->info().tags.title, "\xe2\x80\x9cYes\xe2\x80\x9d \xe2\x82\xac");
}

}  // namespace
}  // namespace velmor::render::test
