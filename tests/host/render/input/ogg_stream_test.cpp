// Ogg files that are more or less than one whole stream.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "disc/audio/ogg_pages.h"
#include "disc/audio/readable_file.h"
#include "host/render/input/marks/vorbis_comments.h"
#include "tests/host/render/input/sound_files.h"

namespace velmor::render::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;

constexpr size_t kStreamFrames = 60000;

std::string vorbisFile(const Folder& folder, uint32_t seed) {
  std::mt19937 random(seed);
  std::vector<int16_t> samples(2 * kStreamFrames);
  for (int16_t& sample : samples) sample = static_cast<int16_t>(random() % 20000U);
  writeShorts(folder.path("made"), {SF_FORMAT_OGG | SF_FORMAT_VORBIS, 44100, 2}, samples);
  return readFile(folder.path("made"));
}

/// Where each page begins, and the end of the last.
std::vector<size_t> pagesOf(const std::string& bytes) {
  std::vector<size_t> starts{0};
  while (bytes.compare(starts.back(), 4, "OggS") == 0) {
    const size_t lengths = starts.back() + 27;
    const auto count = static_cast<unsigned char>(bytes[lengths - 1]);
    size_t next = lengths + count;
    for (size_t i = 0; i < count; ++i) next += static_cast<unsigned char>(bytes[lengths + i]);
    starts.push_back(next);
  }
  return starts;
}

TEST(OggStream, OfOneWholeLinkIsReadToItsEnd) {
  const Folder folder;
  const std::string bytes = vorbisFile(folder, 1);
  ASSERT_EQ(pagesOf(bytes).back(), bytes.size());
  const auto input = AudioInput::open(folder.write("a.ogg", bytes), Dither::kNone);
  EXPECT_EQ(readAll(*input, 4096).left.size(), kStreamFrames);
}

TEST(OggStream, ThatIsCutBetweenTwoPagesBreaksOff) {
  const Folder folder;
  const std::string bytes = vorbisFile(folder, 1);
  const std::vector<size_t> pages = pagesOf(bytes);
  ASSERT_GT(pages.size(), 6U);
  for (size_t kept = 4; kept + 1 < pages.size(); ++kept) {
    EXPECT_THAT(refusalOf(folder.write("cut.ogg", bytes.substr(0, pages[kept]))),
                AllOf(HasSubstr("cut.ogg\" breaks off"), HasSubstr("copy or export it again")))
        << kept << " pages";
  }
}

TEST(OggStream, ThatFollowsAnotherOneIsRefusedAndNotLeftOut) {
  const Folder folder;
  const std::string chain = vorbisFile(folder, 1) + vorbisFile(folder, 2);
  const std::string refusal = refusalOf(folder.write("chain.ogg", chain));
  EXPECT_THAT(refusal, AllOf(HasSubstr("chain.ogg\""), HasSubstr("several Ogg streams"),
                             HasSubstr("convert it to WAV or FLAC")));
}

TEST(OggStream, ThatFollowsForeignBytesIsFound) {
  const Folder folder;
  const std::string chain = vorbisFile(folder, 1) + std::string(70000, 'x') + vorbisFile(folder, 2);
  EXPECT_THAT(refusalOf(folder.write("a.ogg", chain)), HasSubstr("several Ogg streams"));
}

TEST(OggStream, MayHaveATagBehindItsLastPage) {
  const Folder folder;
  const std::string bytes = vorbisFile(folder, 1) + "TAG" + std::string(125, ' ');
  EXPECT_EQ(refusalOf(folder.write("a.ogg", bytes)), "");
}

TEST(OggStream, OfDamagedPagesIsWalkedToItsEnd) {
  const Folder folder;
  const std::string whole = vorbisFile(folder, 1).substr(0, 12000);
  std::mt19937 random(17);
  for (int round = 0; round < 60; ++round) {
    std::string broken = whole.substr(0, 5 + random() % whole.size());
    for (int i = 0; i < 30; ++i) {
      // Mostly in the headers, where the lengths are.
      broken[random() % std::min<size_t>(broken.size(), 400)] = static_cast<char>(random());
    }
    broken.replace(0, 5, "OggS", 5);
    disc::ReadableFile opened(folder.write("a.ogg", broken));
    const disc::FileBytes file = opened.bytes();
    disc::OggPages pages(file);
    int64_t end = 0;
    while (const std::optional<disc::OggPage> page = pages.next()) {
      ASSERT_GT(page->end, end) << "or the walk would not come to an end";
      end = page->end;
    }
    ASSERT_GT(end, 0);
    EXPECT_LE(vorbisCommentsIn(file).size(), broken.size());
  }
}

}  // namespace
}  // namespace velmor::render::test
