#include "disc/files/draft_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>

#include "tests/kit/as_nobody.h"
#include "tests/kit/fork.h"
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
    EXPECT_THAT(m_folder.names(), ElementsAre(testing::StartsWith(".velmor-ddp-")));
    draft.takePlace();
    EXPECT_EQ(readFile(m_folder / "new/a"), "1");
  }
  EXPECT_THAT(m_folder.names(), ElementsAre("new"));
}

TEST_F(DraftFolders, AreGoneWhenTheyDoNot) {
  { const DraftFolder draft(m_folder / "new", false, nothing); }
  EXPECT_THAT(m_folder.names(), testing::IsEmpty());
}

/// Kills a process that has filled a draft for `target`.
void killWithADraft(const fs::path& target) {
  test_kit::runUntilKilled([&target] {
    const DraftFolder draft(target, false, [](const std::string&) { return false; });
    writeFile(draft.path() / "image", std::string(3'000'000, 'x'));
    raise(SIGKILL);
  });
}

TEST_F(DraftFolders, OfKilledProcessesAreRemovedAndTold) {
  killWithADraft(m_folder / "new");
  ASSERT_EQ(m_folder.names().size(), 1U);
  const std::string left = m_folder.names()[0];
  const DraftFolder draft(m_folder / "other", false, nothing);
  EXPECT_THAT(
      draft.warnings(),
      ElementsAre(testing::AllOf(testing::HasSubstr(left),
                                 testing::EndsWith("a killed run has left, was removed, 3 MB"))));
  EXPECT_FALSE(fs::exists(m_folder / left));
}

TEST_F(DraftFolders, ThatAreStillHeldAreLeftAlone) {
  const DraftFolder one(m_folder / "one", false, nothing);
  writeFile(one.path() / "a", "1");
  const DraftFolder other(m_folder / "other", false, nothing);
  EXPECT_THAT(other.warnings(), testing::IsEmpty());
  EXPECT_EQ(readFile(one.path() / "a"), "1");
}

TEST_F(DraftFolders, OfAnotherUserAreLeftAlone) {
  if (!test_kit::isRoot()) GTEST_SKIP() << "nobody but root can be two users";
  fs::permissions(m_folder / ".", fs::perms::all);
  fs::create_directory(m_folder / ".velmor-ddp-abcdef");
  fs::permissions(m_folder / ".velmor-ddp-abcdef", fs::perms::all);
  const test_kit::AsNobody nobody;
  const DraftFolder draft(m_folder / "new", false, nothing);
  EXPECT_THAT(draft.warnings(), testing::IsEmpty());
  EXPECT_TRUE(fs::exists(m_folder / ".velmor-ddp-abcdef"));
}

TEST_F(DraftFolders, ThatHoldWhatWasToBeReplacedAreToldAndStay) {
  fs::create_directory(m_folder / ".velmor-ddp-abcdef.old");
  fs::create_directory(m_folder / ".velmor-ddp-notes.d");
  fs::create_directory(m_folder / ".master-backup");
  const DraftFolder draft(m_folder / "new", false, nothing);
  EXPECT_THAT(draft.warnings(),
              ElementsAre(testing::HasSubstr("stays: it is what was to be replaced")));
  EXPECT_EQ(m_folder.names().size(), 4U);
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
