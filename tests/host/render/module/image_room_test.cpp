#include "host/render/module/image_room.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "tests/host/render/module/memory_file.h"

namespace velmor::render::test {
namespace {

constexpr int64_t kKiB = 1024;

/// Until no room is left to make; how often some was made.
int makeAll(ImageRoom& room, int64_t written) {
  int made = 0;
  while (room.makeBehind(written)) ++made;
  return made;
}

TEST(RoomForTheImage, LeavesItsLengthAndWhatItHolds) {
  const MemoryFile image;
  ASSERT_EQ(write(image.descriptor(), "abc", 3), 3);
  ImageRoom room(image.path(), 1024 * kKiB);
  EXPECT_GT(makeAll(room, 0), 0);
  EXPECT_EQ(image.bytes(), 3);
  std::string content(4, '-');
  EXPECT_EQ(pread(image.descriptor(), content.data(), 4, 0), 3);
  EXPECT_EQ(content, "abc-");
}

TEST(RoomForTheImage, IsMadeInPiecesUpToTheBytesThatItIsToHold) {
  const MemoryFile image;
  ImageRoom room(image.path(), 1024 * kKiB);
  ASSERT_TRUE(room.makeBehind(0));
  const int64_t first = image.room();
  EXPECT_GT(first, 0);
  EXPECT_LE(first, 128 * kKiB);
  ASSERT_TRUE(room.makeBehind(0));
  EXPECT_EQ(image.room(), 2 * first);
  makeAll(room, 0);
  EXPECT_EQ(image.room(), 1024 * kKiB - first) << "all but the piece that is being written";
}

TEST(RoomForTheImage, EndsWithTheImageThatIsNoWholeNumberOfPieces) {
  const MemoryFile image;
  ImageRoom room(image.path(), 1000 * kKiB);
  makeAll(room, 500 * kKiB);
  EXPECT_EQ(image.room(), 372 * kKiB) << "all behind the 628 KiB that the writer may be in";
}

TEST(RoomForTheImage, IsNotMadeBeforeTheWriter) {
  const MemoryFile image;
  ImageRoom room(image.path(), 1024 * kKiB);
  ASSERT_TRUE(room.makeBehind(640 * kKiB));
  EXPECT_EQ(makeAll(room, 640 * kKiB), 1);
  EXPECT_EQ(image.room(), 256 * kKiB);
}

TEST(RoomForTheImage, FollowsTheWriterThatHasComeNearer) {
  const MemoryFile image;
  ImageRoom room(image.path(), 1024 * kKiB);
  ASSERT_TRUE(room.makeBehind(0));
  ASSERT_TRUE(room.makeBehind(512 * kKiB));
  EXPECT_EQ(makeAll(room, 512 * kKiB), 2);
  EXPECT_EQ(makeAll(room, 0), 0) << "what the writer has passed is left to it";
}

TEST(RoomForTheImage, OfAShortImageIsTheWritersOwnAffair) {
  const MemoryFile image;
  ImageRoom room(image.path(), 2352);
  EXPECT_FALSE(room.makeBehind(0));
  EXPECT_EQ(image.room(), 0);
}

TEST(RoomForTheImage, IsNotTriedAgainWhereTheSystemHasRefused) {
  ImageRoom none("/nowhere/album.bin", 1024 * kKiB);
  EXPECT_FALSE(none.makeBehind(0));
  ImageRoom device("/dev/null", 1024 * kKiB);
  EXPECT_FALSE(device.makeBehind(0));
  EXPECT_FALSE(device.makeBehind(0));
}

}  // namespace
}  // namespace velmor::render::test
