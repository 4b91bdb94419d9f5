// Files that are written whole or not at all.
#include "disc/files/whole_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <iterator>

#include "disc/files/draft.h"
#include "disc/files/placement.h"
#include "tests/check/test_images.h"

namespace velmor::disc::test {
namespace {

namespace fs = std::filesystem;
using check::test::readFile;
using check::test::TemporaryFolder;
using check::test::writeFile;

std::ptrdiff_t filesIn(const TemporaryFolder& folder) {
  return std::distance(fs::directory_iterator(folder.path()), {});
}

TEST(WholeFiles, ReplaceNothingUnlessForced) {
  TemporaryFolder folder;
  writeFile(folder / "a", "old");
  EXPECT_THROW(writeWhole(folder / "a", "new", false), Failure);
  EXPECT_EQ(readFile(folder / "a"), "old");
  writeWhole(folder / "a", "new", true);
  EXPECT_EQ(readFile(folder / "a"), "new");
  writeWhole(folder / "b", "fresh", false);
  EXPECT_EQ(readFile(folder / "b"), "fresh");
  EXPECT_EQ(filesIn(folder), 2);
}

TEST(WholeFiles, ComeAllOrNone) {
  TemporaryFolder folder;
  writeFile(folder / "a", "old");
  fs::create_directory(folder / "b");
  EXPECT_THROW(writeWhole({{folder / "a", "new"}, {folder / "b", "new"}}, true), Failure);
  EXPECT_EQ(readFile(folder / "a"), "old") << "the first goes back when the second finds no place";
  EXPECT_EQ(filesIn(folder), 2);
  EXPECT_THROW(writeWhole({{folder / "new", "x"}, {folder / "a", "x"}}, false), Failure);
  EXPECT_FALSE(fs::exists(folder / "new"));
  EXPECT_EQ(filesIn(folder), 2);
}

TEST(WholeFiles, NameThePathThatCannotBeWritten) {
  TemporaryFolder folder;
  try {
    writeWhole(folder / "none/a", "x", false);
    FAIL() << "there is no such folder";
  } catch (const Failure& failure) {
    EXPECT_EQ(std::string(failure.what()), '"' + (folder / "none/a").string() +
                                               "\" cannot be written: No such file or directory; "
                                               "choose another place");
  }
}

TEST(Drafts, LeaveNothingBehindUnlessTheyTakeTheirPlace) {
  TemporaryFolder folder;
  writeFile(folder / "a", "old");
  ASSERT_EQ(::chmod((folder / "a").c_str(), 0640), 0);
  {
    Draft draft(folder / "a");
    draft.write("half");
    EXPECT_EQ(filesIn(folder), 2);
  }
  EXPECT_EQ(filesIn(folder), 1);
  Draft draft(folder / "a");
  draft.write("whole");
  draft.takePermissionsOfTarget();
  draft.sync();
  EXPECT_EQ(readFile(folder / "a"), "old");
  draft.takePlace();
  EXPECT_EQ(readFile(folder / "a"), "whole");
  EXPECT_EQ(fs::status(folder / "a").permissions(), fs::perms(0640));
  EXPECT_EQ(filesIn(folder), 1);
}

TEST(Drafts, TakeEveryPermissionOfTheFileThatTheyReplace) {
  const TemporaryFolder folder;
  for (mode_t bit = 1; bit <= 04000; bit <<= 1) {
    writeFile(folder / "a", "old");
    ASSERT_EQ(::chmod((folder / "a").c_str(), 0600 | bit), 0);
    Draft draft(folder / "a");
    draft.takePermissionsOfTarget();
    draft.takePlace();
    EXPECT_EQ(fs::status(folder / "a").permissions(), fs::perms(0600 | bit)) << bit;
  }
}

TEST(Placements, HaveAWayBack) {
  TemporaryFolder folder;
  writeFile(folder / "made", "new");
  writeFile(folder / "target", "old");
  Placement placement(folder / "made", folder / "target", folder / "backup", true);
  EXPECT_EQ(readFile(folder / "target"), "new");
  EXPECT_EQ(readFile(folder / "backup"), "old");
  EXPECT_TRUE(placement.takeBack());
  EXPECT_EQ(readFile(folder / "target"), "old");
  EXPECT_EQ(filesIn(folder), 1);
}

TEST(Placements, LeaveNoBackupOfAFileThatWasNeverReplaced) {
  TemporaryFolder folder;
  writeFile(folder / "target", "old");
  EXPECT_THROW(Placement(folder / "gone", folder / "target", folder / "backup", true),
               fs::filesystem_error);
  EXPECT_EQ(readFile(folder / "target"), "old");
  EXPECT_EQ(filesIn(folder), 1);
}

}  // namespace
}  // namespace velmor::disc::test
