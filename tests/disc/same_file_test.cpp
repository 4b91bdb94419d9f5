#include "disc/files/same_file.h"

#include <gtest/gtest.h>

#include "tests/kit/scratch_folder.h"
#include "tests/kit/whole_files.h"

namespace velmor::disc::test {
namespace {

namespace fs = std::filesystem;

TEST(SameFile, IsToldThroughLinksAndSpellings) {
  const test_kit::ScratchFolder folder;
  test_kit::writeFile(folder / "a", "a");
  test_kit::writeFile(folder / "b", "a");
  fs::create_directory(folder / "within");
  fs::create_symlink("a", folder / "link");
  fs::create_hard_link(folder / "a", folder / "second");
  for (const char* other : {"a", "link", "second", "within/../a"})
    EXPECT_TRUE(sameFile(folder / "a", folder / other)) << other;
  EXPECT_FALSE(sameFile(folder / "a", folder / "b"));
}

TEST(SameFile, IsToldOfFilesThatAreNotThereYet) {
  const test_kit::ScratchFolder folder;
  fs::create_directory(folder / "within");
  fs::create_symlink("within", folder / "link");
  EXPECT_TRUE(sameFile(folder / "within/new", folder / "link/new"));
  EXPECT_TRUE(sameFile(folder / "new", folder / "within/../new"));
  EXPECT_FALSE(sameFile(folder / "new", folder / "newer"));
}

TEST(SameFile, IsNoneWhereAPathCannotBeFollowed) {
  const test_kit::ScratchFolder folder;
  fs::create_symlink("circle", folder / "circle");
  EXPECT_FALSE(sameFile(folder / "circle", folder / "circle"));
  EXPECT_FALSE(sameFile(folder / "circle", folder / "new"));
  EXPECT_FALSE(sameFile(folder / "new", folder / "circle"));
}

}  // namespace
}  // namespace velmor::disc::test
