// What cannot be read is refused with a sentence that names the file and what to do.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <random>

#include "disc/failure.h"
#include "host/render/input/marks/label_track.h"
#include "tests/host/render/input/sound_files.h"
#include "tests/kit/as_nobody.h"
#include "tests/kit/faults/system_calls.h"

namespace velmor::render::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::vector<int16_t> noise(size_t count) {
  std::mt19937 random(3);
  std::vector<int16_t> samples(count);
  for (int16_t& sample : samples) sample = static_cast<int16_t>(random() % 20000U);
  return samples;
}

TEST(Failure, NamesAMissingFile) {
  const Folder folder;
  const std::string path = folder.path("song.wav");
  EXPECT_THAT(refusalOf(path), AllOf(HasSubstr(path), HasSubstr("no such file; check its name")));
  EXPECT_THAT(errorOf([&] { readLabelTrack(path); }), HasSubstr("no such file"));
}

TEST(Failure, NamesWhatTheSystemSaysOfAVolumeThatFailsMeanwhile) {
  const Folder folder;
  test_kit::writeWav(folder.path("song.wav"), 3);
  const auto input = AudioInput::open(folder.path("song.wav"), Dither::kNone);
  test_kit::SystemCalls calls;
  calls.fail(test_kit::Call::kPread, EIO);
  EXPECT_THAT(errorOf([&] { readAll(*input, 4096); }),
              HasSubstr("Input/output error; check the file and its volume"));
}

TEST(Failure, NamesTheFormatAndItsDecoder) {
  const Folder folder;
  const std::pair<std::string, const char*> cases[] = {
      {std::string("\0\0\0\x20", 4) + "ftypM4A ", "an MPEG-4 file (M4A: AAC or Apple Lossless)"},
      {"wvpk", "a WavPack file"},
      {"MAC ", "a Monkey's Audio file"},
      {"TTA1", "a True Audio file"},
      {"\x30\x26\xb2\x75", "a Windows Media file"},
  };
  for (const auto& [magic, name] : cases) {
    const std::string path = folder.write("song.x", magic + std::string(5000, '\1'));
    EXPECT_THAT(refusalOf(path),
                AllOf(HasSubstr(std::string("is ") + name + ", which is not read here"),
                      HasSubstr("ffmpeg -i \"" + path + "\" -c:a pcm_f32le \"" +
                                folder.path("song.wav") + "\"")));
  }
}

TEST(Failure, NamesAFolder) {
  const Folder folder;
  EXPECT_THAT(refusalOf(folder.path("")), HasSubstr("it is a folder; name the files in it"));
  EXPECT_THAT(errorOf([&] { readLabelTrack(folder.path("")); }), HasSubstr("it is a folder"));
}

TEST(Failure, DoesNotWaitForAPipe) {
  const Folder folder;
  const std::string path = folder.path("pipe");
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  EXPECT_THAT(refusalOf(path), HasSubstr("a pipe or a device; save it as a file first"));
}

TEST(Failure, NamesAFileWithoutPermission) {
  const Folder folder;
  ASSERT_EQ(::chmod(folder.path("").c_str(), 0755), 0);
  const std::string path = folder.write("locked.wav", "RIFF");
  ASSERT_EQ(::chmod(path.c_str(), 0), 0);
  std::string refusal;
  {
    const test_kit::AsNobody nobody;  // root may read everything
    refusal = refusalOf(path);
  }
  EXPECT_THAT(refusal, AllOf(HasSubstr(path), HasSubstr("permission is missing")));
}

TEST(Failure, NamesAnEmptyFile) {
  const Folder folder;
  EXPECT_THAT(refusalOf(folder.write("empty.wav", "")), HasSubstr("is empty; export"));
}

TEST(Failure, NamesWhatIsNoAudio) {
  const Folder folder;
  for (const char* name : {"text.wav", "text.au", "text.vox", "text.gsm", "text.mp3"}) {
    EXPECT_THAT(refusalOf(folder.write(name, "Dear Sir, this is a letter and no music.\n")),
                AllOf(HasSubstr(name), HasSubstr("is no audio file"), HasSubstr("convert it")));
  }
}

TEST(Failure, NamesAFileWithoutASingleFrame) {
  const Folder folder;
  const std::string path = folder.write("none.wav", riffFile(formatChunk() + dataChunk(0)));
  EXPECT_THAT(refusalOf(path), HasSubstr("holds no audio"));
}

std::string fileAtRate(uint32_t rate, size_t frames) {
  const std::string format = riffChunk("fmt ", little16(1) + little16(2) + little32(rate) +
                                                   little32(rate * 4) + little16(4) + little16(16));
  return riffFile(format + dataChunk(frames));
}

TEST(Failure, NamesARateThatNoRecordingHas) {
  const Folder folder;
  for (const uint32_t rate : {1U, 10U, 100U, 999U, 1000001U, 2147483647U}) {
    EXPECT_THAT(refusalOf(folder.write("a.wav", fileAtRate(rate, 3000))),
                AllOf(HasSubstr("a.wav\" states a sample rate of " + std::to_string(rate) + " Hz"),
                      HasSubstr("export it again")));
  }
  for (const uint32_t rate : {1000U, 5512U, 768000U, 1000000U}) {
    EXPECT_EQ(refusalOf(folder.write("a.wav", fileAtRate(rate, 3000))), "") << rate;
  }
}

TEST(Failure, NamesAFileOfLessThanAFrameOfTheDiscsRate) {
  const Folder folder;
  EXPECT_THAT(
      refusalOf(folder.write("a.wav", fileAtRate(96000, 1))),
      AllOf(HasSubstr("a.wav\" is shorter than one frame at 44100 Hz"), HasSubstr("leave it out")));
  EXPECT_EQ(refusalOf(folder.write("a.wav", fileAtRate(88200, 1))), "") << "a half goes up";
}

TEST(Failure, NamesAFileThatBreaksOff) {
  const Folder folder;
  const std::vector<int16_t> samples = noise(2 * 60000);
  for (const int format :
       {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_ENDIAN_BIG | SF_FORMAT_WAV | SF_FORMAT_PCM_16,
        SF_FORMAT_AIFF | SF_FORMAT_PCM_16, SF_FORMAT_AU | SF_FORMAT_PCM_16,
        SF_FORMAT_W64 | SF_FORMAT_PCM_16, SF_FORMAT_RF64 | SF_FORMAT_PCM_16,
        SF_FORMAT_CAF | SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16,
        SF_FORMAT_OGG | SF_FORMAT_VORBIS}) {
    const std::string path = folder.path("whole");
    writeShorts(path, {format, 44100, 2}, samples);
    ASSERT_EQ(refusalOf(path), "") << std::hex << format;
    const std::string bytes = readFile(path);
    EXPECT_THAT(refusalOf(folder.write("half", bytes.substr(0, bytes.size() / 2))),
                AllOf(HasSubstr("half\" breaks off"), HasSubstr("copy or export it again")))
        << std::hex << format;
  }
}

TEST(Failure, NamesAFileThatShrinksWhileItIsRead) {
  const Folder folder;
  const std::string path = folder.path("a.wav");
  writeShorts(path, {}, noise(2 * 100000));
  const auto input = AudioInput::open(path, Dither::kNone);
  std::filesystem::resize_file(path, 200000);
  EXPECT_THAT(errorOf([&] { readAll(*input, 1024); }),
              AllOf(HasSubstr("breaks off or is damaged at 0:01 of 0:02")));
}

TEST(Failure, NamesDamageInACompressedFile) {
  const Folder folder;
  const std::string path = folder.path("a.flac");
  writeShorts(path, {SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 44100, 2}, noise(2 * 60000));
  std::string bytes = readFile(path);
  for (size_t i = 0; i < 40; ++i) bytes[bytes.size() / 2 + i] = '\x55';
  EXPECT_THAT(refusalOf(folder.write("bad.flac", bytes)), HasSubstr("is damaged at"));
}

// Programs that write into a pipe cannot come back to fill in the size.
TEST(Input, AStreamOfUnknownSizeIsReadToItsEnd) {
  const Folder folder;
  for (const uint32_t size : {0xffffffffU, 0x7ffff000U, 0x7fffffffU}) {
    const std::string path =
        folder.write("stream.wav", "RIFF" + little32(size) + "WAVE" + formatChunk() + "data" +
                                       little32(size) + std::string(4000, '\1'));
    const auto input = AudioInput::open(path, Dither::kNone);
    EXPECT_EQ(input->info().frames, 1000);
    EXPECT_EQ(readAll(*input, 64).left.size(), 1000U);
  }
}

std::string wave64File(const Folder& folder) {
  const std::string path = folder.path("a.w64");
  writeShorts(path, {SF_FORMAT_W64 | SF_FORMAT_PCM_16, 44100, 2}, noise(2 * 5000));
  return readFile(path);
}

TEST(Failure, OfALengthBeyondTheFileIsSeenInEachOfItsEightBytes) {
  const Folder folder;
  const std::string whole = wave64File(folder);
  const size_t length = whole.find("data") + 16;
  for (size_t byte = 2; byte < 8; ++byte) {
    std::string bytes = whole;
    bytes[length + byte] = '\x01';
    EXPECT_THAT(refusalOf(folder.write("b.w64", bytes)), HasSubstr("breaks off")) << byte;
  }
}

TEST(Failure, OfALengthIsSeenBehindAChunkWithoutContent) {
  const Folder folder;
  std::string bytes = wave64File(folder);
  const size_t data = bytes.find("data");
  bytes[data + 16 + 5] = '\x01';
  const std::string empty_chunk =
      "none" + std::string(12, '\0') + std::string("\x18\0\0\0\0\0\0\0", 8);
  const std::string changed = bytes.substr(0, data) + empty_chunk + bytes.substr(data);
  EXPECT_THAT(refusalOf(folder.write("b.w64", changed)), HasSubstr("breaks off"));
}

// The decoder cannot read these, but they are whole.
TEST(Failure, OfACafStreamOfUnknownSizeSpeaksOfNoBreak) {
  const Folder folder;
  const std::string path = folder.path("a.caf");
  writeShorts(path, {SF_FORMAT_CAF | SF_FORMAT_PCM_16, 44100, 2}, noise(2 * 5000));
  std::string bytes = readFile(path);
  const size_t data = bytes.find("data");
  ASSERT_NE(data, std::string::npos);
  // -1: "to the end of the file"
  const std::string unknown = folder.write("b.caf", bytes.replace(data + 4, 8, 8, '\xff'));
  EXPECT_THAT(refusalOf(unknown), AllOf(HasSubstr("convert it"), Not(HasSubstr("breaks off"))));
}

TEST(Input, AFlacStreamOfUnknownLengthIsReadToItsEnd) {
  const Folder folder;
  const std::string path = folder.path("a.flac");
  writeShorts(path, {SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 44100, 2}, noise(2 * 50000));
  std::string bytes = readFile(path);
  // The stream's header: 36 bits of frame count from the low half of byte 21 on; 0 is "unknown".
  bytes[21] = static_cast<char>(bytes[21] & 0xf0);
  for (size_t i = 22; i < 26; ++i) bytes[i] = '\0';
  const auto input = AudioInput::open(folder.write("unknown.flac", bytes), Dither::kNone);
  EXPECT_EQ(input->info().frames, 50000);
  EXPECT_EQ(readAll(*input, 1024).left.size(), 50000U);
}

TEST(Failure, SurvivesEveryCutOfEveryHeader) {
  const Folder folder;
  for (const int format : {SF_FORMAT_WAV, SF_FORMAT_AIFF, SF_FORMAT_AU, SF_FORMAT_W64,
                           SF_FORMAT_RF64, SF_FORMAT_CAF, SF_FORMAT_FLAC}) {
    const std::string path = folder.path("whole");
    writeShorts(path, {format | SF_FORMAT_PCM_16, 44100, 2}, noise(200));
    const std::string bytes = readFile(path);
    for (size_t length = 1; length < std::min<size_t>(bytes.size(), 160); length += 3) {
      EXPECT_NE(refusalOf(folder.write("cut", bytes.substr(0, length))), "")
          << std::hex << format << " after " << std::dec << length << " bytes";
    }
  }
}

}  // namespace
}  // namespace velmor::render::test
