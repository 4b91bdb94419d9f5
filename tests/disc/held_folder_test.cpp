// The moment between a folder's birth and its lock, in which another process may take it for an
// abandoned one.
#include "disc/files/held_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "tests/kit/faults/system_calls.h"
#include "tests/kit/scratch_folder.h"

namespace velmor::disc::test {
namespace {

using test_kit::Call;
using test_kit::CallRecord;
using test_kit::SystemCalls;
using testing::Contains;
using testing::SizeIs;

class HeldFolders : public testing::Test {
 protected:
  /// What is made is there and not somebody's else.
  void makeOne() {
    const HeldFolder held(m_folder / ".", ".held-", "");
    m_made = std::filesystem::path(held.path()).filename().string();
    EXPECT_THAT(m_folder.names(), Contains(m_made));
    std::vector<std::filesystem::path> abandoned;
    forEachAbandoned(m_folder / ".", ".held-",
                     [&](const auto& folder) { abandoned.push_back(folder.filename()); });
    EXPECT_THAT(abandoned, testing::Not(Contains(std::filesystem::path(m_made))));
  }

  test_kit::ScratchFolder m_folder;
  std::string m_made;
};

TEST_F(HeldFolders, AreOthersThanOneThatAnotherProcessHasLocked) {
  SystemCalls calls;
  calls.failAt(Call::kFlock, 1, EWOULDBLOCK);
  makeOne();
  // The first is left to who has locked it.
  EXPECT_THAT(m_folder.names(), SizeIs(2));
}

TEST_F(HeldFolders, AreOthersThanOneThatAnotherProcessHasRemoved) {
  std::string removed;
  SystemCalls calls;
  calls.observe([&](Call call, const CallRecord&) {
    if (call != Call::kFlock || !removed.empty()) return;
    removed = m_folder.names().front();
    ::rmdir((m_folder / removed).c_str());
  });
  makeOne();
  EXPECT_NE(m_made, removed);
  EXPECT_THAT(m_folder.names(), SizeIs(1));
}

TEST_F(HeldFolders, NeedNoLockWhereTheSystemHasNone) {
  SystemCalls calls;
  calls.fail(Call::kFlock, ENOLCK);
  makeOne();
  EXPECT_THAT(m_folder.names(), SizeIs(1));
}

}  // namespace
}  // namespace velmor::disc::test
