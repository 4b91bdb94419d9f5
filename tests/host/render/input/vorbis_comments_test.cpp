// The songwriter and the ISRC in the comments of FLAC and Ogg files.
#include "host/render/input/marks/vorbis_comments.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/host/render/input/sound_files.h"

namespace velmor::render::test {
namespace {

using Comments = std::vector<std::string>;

std::string block(const Comments& comments) {
  std::string bytes = little32(4) + "make" + little32(static_cast<uint32_t>(comments.size()));
  for (const std::string& comment : comments) {
    bytes += little32(static_cast<uint32_t>(comment.size())) + comment;
  }
  return bytes;
}

Tags tagsOf(const std::string& bytes) {
  Tags tags;
  addVorbisComments(std::as_bytes(std::span(bytes.data(), bytes.size())), tags);
  return tags;
}

TEST(VorbisComments, NameTheSongwriterAndTheCode) {
  const Tags tags = tagsOf(block({"TITLE=Song", "ISRC=DEA123456789", "COMPOSER=C. Poser"}));
  EXPECT_EQ(tags.isrc, "DEA123456789");
  EXPECT_EQ(tags.songwriter, "C. Poser");
  EXPECT_EQ(tags.title, "") << "which the decoder knows";
}

TEST(VorbisComments, HaveLengthsOfFourBytes) {
  const std::string comment = "ISRC=DEA123456789";
  const auto length = static_cast<uint32_t>(comment.size());
  const std::string head = little32(4) + "make" + little32(1);
  EXPECT_EQ(tagsOf(head + little32(length) + comment).isrc, "DEA123456789");
  for (const uint32_t beyond : {1U << 8, 1U << 16, 1U << 24})
    EXPECT_EQ(tagsOf(head + little32(beyond + length) + comment).isrc, "") << beyond;
}

TEST(VorbisComments, HaveNamesInCapitalsOrNot) {
  EXPECT_EQ(tagsOf(block({"isrc=DEA123456789"})).isrc, "DEA123456789");
  EXPECT_EQ(tagsOf(block({"Composer=A"})).songwriter, "A");
  EXPECT_EQ(tagsOf(block({"XCOMPOSER=A", "COMPOSERS=B", "COMPOSER"})).songwriter, "");
}

TEST(VorbisComments, GiveACodeAsTheDiscHoldsItOrNone) {
  EXPECT_EQ(tagsOf(block({"ISRC=de-a12-34-56789"})).isrc, "DEA123456789");
  for (const char* wrong : {"", "DEA12345678", "DEA1234567890", "1EA123456789", "unknown"}) {
    EXPECT_EQ(tagsOf(block({std::string("ISRC=") + wrong})).isrc, "") << wrong;
  }
  EXPECT_EQ(tagsOf(block({"ISRC=later", "ISRC=DEA123456789", "ISRC=DEA123456780"})).isrc,
            "DEA123456789");
}

TEST(VorbisComments, MayNameSeveralSongwriters) {
  EXPECT_EQ(tagsOf(block({"COMPOSER=One", "COMPOSER=", "COMPOSER=Two\nor so"})).songwriter,
            "One, Two or so");
}

TEST(VorbisComments, EndAfterAsManyAsThereShouldBe) {
  const std::string counted = block({"TITLE=Song", "TITLE=Song"});
  const std::string more = block({"ISRC=DEA123456789"}).substr(12);
  EXPECT_EQ(tagsOf(counted + more).isrc, "");
}

TEST(VorbisComments, ThatAreDamagedAreReadAsFarAsTheyAreWhole) {
  const std::string whole = block({"ISRC=DEA123456789", "COMPOSER=Someone"});
  for (size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(tagsOf(whole.substr(0, length)).songwriter, "") << length;
  }
  EXPECT_EQ(tagsOf(whole.substr(0, whole.size() - 1)).isrc, "DEA123456789");
  EXPECT_EQ(tagsOf(little32(0xffffffffU) + whole.substr(4)).isrc, "");
  std::mt19937 random(5);
  for (int round = 0; round < 3000; ++round) {
    std::string broken = whole;
    for (int i = 0; i < 3; ++i) broken[random() % broken.size()] = static_cast<char>(random());
    const Tags tags = tagsOf(std::string(broken.begin(), broken.end()));
    ASSERT_TRUE(tags.isrc.empty() || tags.isrc.size() == 12);
    ASSERT_LE(tags.songwriter.size(), 2 * broken.size());
  }
}

const Comments kComments{"TITLE=Song", "ISRC=de-a12-34-56789", "COMPOSER=C. Poser"};

void expectTheTags(const std::string& path) {
  const auto input = AudioInput::open(path, Dither::kNone);
  EXPECT_EQ(input->info().tags.title, "Song") << path;
  EXPECT_EQ(input->info().tags.isrc, "DEA123456789") << path;
  EXPECT_EQ(input->info().tags.songwriter, "C. Poser") << path;
  EXPECT_EQ(static_cast<int64_t>(readAll(*input, 333).left.size()), input->info().frames);
}

constexpr size_t kFlacFrames = 1000;

TEST(Tags, OfFlacFilesNameTheSongwriterAndTheCode) {
  const Folder folder;
  const std::string comments = flacBlock(4, block(kComments));
  expectTheTags(folder.write("a.flac", flacFile(folder, kFlacFrames, comments)));
  std::string behind_padding = flacBlock(1, std::string(70000, '\0'));
  behind_padding += comments;
  expectTheTags(folder.write("b.flac", flacFile(folder, kFlacFrames, behind_padding)));
}

TEST(Tags, OfFlacFilesAreFoundBehindAnId3Tag) {
  const Folder folder;
  std::string bytes("ID3\4\0\0\0\0\1\2", 10);  // of 130 bytes
  bytes.append(130, '\0');
  bytes += flacFile(folder, kFlacFrames, flacBlock(4, block(kComments)));
  expectTheTags(folder.write("a.flac", bytes));
}

TEST(Tags, OfFlacFilesWithoutCommentsAreEmpty) {
  const Folder folder;
  const auto input = AudioInput::open(
      folder.write("a.flac", flacFile(folder, kFlacFrames, flacBlock(1, "xyz"))), Dither::kNone);
  EXPECT_EQ(input->info().tags.isrc, "");
  EXPECT_EQ(input->info().tags.songwriter, "");
}

/// The check sum of a page: polynomial 0x04c11db7, most significant bit first (RFC 3533).
uint32_t pageSum(const std::string& page) {
  uint32_t sum = 0;
  for (const char byte : page) {
    sum ^= static_cast<uint32_t>(static_cast<unsigned char>(byte)) << 24;
    for (int bit = 0; bit < 8; ++bit) sum = sum << 1 ^ ((sum >> 31) != 0 ? 0x04c11db7U : 0U);
  }
  return sum;
}

std::string page(const std::string& header, const std::string& lengths, const std::string& body) {
  std::string bytes = header + static_cast<char>(lengths.size()) + lengths + body;
  return bytes.replace(22, 4, little32(pageSum(std::string(bytes).replace(22, 4, 4, '\0'))));
}

/// A Vorbis file whose second packet, the comments, is replaced. It shares its page with the third.
std::string vorbisWith(const Folder& folder, const Comments& comments) {
  writeShorts(folder.path("made"), {SF_FORMAT_OGG | SF_FORMAT_VORBIS, 44100, 2},
              std::vector<int16_t>(8000, 5));
  const std::string bytes = readFile(folder.path("made"));
  const size_t second = bytes.find("OggS", 4);
  const size_t third = bytes.find("OggS", second + 4);
  const std::string packet = "\3vorbis" + block(comments) + '\1';
  const auto count = static_cast<unsigned char>(bytes[second + 26]);
  const std::string lengths = bytes.substr(second + 27, count);
  size_t old = 0;
  size_t segments = 0;
  do old += static_cast<unsigned char>(lengths[segments]);
  while (static_cast<unsigned char>(lengths[segments++]) == 255);
  const std::string fresh =
      std::string(packet.size() / 255, '\xff') + static_cast<char>(packet.size() % 255);
  const std::string body = bytes.substr(second + 27 + count, third - second - 27 - count);
  return bytes.substr(0, second) +
         page(bytes.substr(second, 26), fresh + lengths.substr(segments),
              packet + body.substr(old)) +
         bytes.substr(third);
}

TEST(Tags, OfOggFilesNameTheSongwriterAndTheCode) {
  const Folder folder;
  expectTheTags(folder.write("a.ogg", vorbisWith(folder, kComments)));
  Comments long_ones = kComments;
  long_ones.insert(long_ones.begin(), "DESCRIPTION=" + std::string(5000, 'd'));
  expectTheTags(folder.write("b.ogg", vorbisWith(folder, long_ones)));
}

}  // namespace
}  // namespace velmor::render::test
