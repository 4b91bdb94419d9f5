#include "disc/files/draft_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/kit/scratch_folder.h"
#include "tests/kit/whole_files.h"

namespace velmor::disc::test {
namespace {

namespace fs = std::filesystem;
using test_kit::readFile;
using test_kit::writeFile;
using testing::ElementsAre;

class DraftFolders : public testing::Test {
 protected:
  static bool nothing(const std::string&) { return false; }
  static bool ours(const std::string& name) { return name.starts_with("our"); }
  test_kit::ScratchFolder m_folder;
};

TEST_F(DraftFolders, AreHiddenUntilTheyTakeTheirPlace) {
  {
    DraftFolder draft(m_folder / "new", false, nothing);
    writeFile(draft.path() / "a", "1");
    EXPECT_FALSE(fs::exists(m_folder / "new"));
    EXPECT_THAT(m_folder.names(), ElementsAre(testing::StartsWith(".new-")));
    draft.takePlace();
    EXPECT_EQ(readFile(m_folder / "new/a"), "1");
  }
  EXPECT_THAT(m_folder.names(), ElementsAre("new"));
}

TEST_F(DraftFolders, AreGoneWhenTheyDoNot) {
  { const DraftFolder draft(m_folder / "new", false, nothing); }
  EXPECT_THAT(m_folder.names(), testing::IsEmpty());
}

TEST_F(DraftFolders, HaveThePermissionsOfAnyOtherFolder) {
  fs::create_directory(m_folder / "usual");
  DraftFolder draft(m_folder / "new", false, nothing);
  draft.takePlace();
  EXPECT_EQ(fs::status(m_folder / "new").permissions(),
            fs::status(m_folder / "usual").permissions());
}

TEST_F(DraftFolders, ReplaceWhatIsTheirsAndKeepTheRest) {
  fs::create_directory(m_folder / "there");
  fs::permissions(m_folder / "there", fs::perms::owner_all);
  writeFile(m_folder / "there/ours", "old");
  writeFile(m_folder / "there/our second", "old");
  writeFile(m_folder / "there/theirs", "mine");
  EXPECT_THROW(DraftFolder(m_folder / "there", false, ours), Failure);
  {
    DraftFolder draft(m_folder / "there", true, ours);
    writeFile(draft.path() / "ours", "new");
    draft.takePlace();
  }
  EXPECT_EQ(readFile(m_folder / "there/ours"), "new");
  EXPECT_EQ(readFile(m_folder / "there/theirs"), "mine");
  EXPECT_FALSE(fs::exists(m_folder / "there/our second"));
  EXPECT_EQ(fs::status(m_folder / "there").permissions(), fs::perms::owner_all);
  EXPECT_THAT(m_folder.names(), ElementsAre("there"));
}

TEST_F(DraftFolders, TakeNoPlaceThatWasFilledMeanwhile) {
  DraftFolder draft(m_folder / "new", false, nothing);
  fs::create_directory(m_folder / "new");
  writeFile(m_folder / "new/theirs", "mine");
  EXPECT_THROW(draft.takePlace(), Failure);
  EXPECT_EQ(readFile(m_folder / "new/theirs"), "mine");
}

TEST_F(DraftFolders, FollowALinkToTheFolderThatIsMeant) {
  fs::create_directory(m_folder / "true");
  fs::create_directory_symlink("true", m_folder / "link");
  DraftFolder draft(m_folder / "link", false, nothing);
  writeFile(draft.path() / "a", "1");
  draft.takePlace();
  EXPECT_TRUE(fs::is_symlink(m_folder / "link"));
  EXPECT_EQ(readFile(m_folder / "true/a"), "1");
}

}  // namespace
}  // namespace velmor::disc::test
