// The hidden folders in which an album and a set are made, where memory runs out.
#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <new>

#include "disc/files/draft_folder.h"
#include "host/render/output/working_folder.h"
#include "tests/kit/faults/system_calls.h"
#include "tests/kit/scratch_folder.h"
#include "tests/kit/whole_files.h"

namespace render_test {
namespace {

namespace fs = std::filesystem;
using test_kit::Times;
using Names = std::vector<std::string>;

class HiddenFolders : public testing::TestWithParam<Times> {
 protected:
  struct Ended {
    bool failed;      ///< by want of memory
    int allocations;  ///< that were asked for
  };
  static Ended withFailingAllocation(int nth, const std::function<void()>& act) {
    test_kit::SystemCalls calls;
    calls.failAllocation(nth, GetParam());
    try {
      act();
    } catch (const std::bad_alloc&) {
      return {true, calls.allocations()};
    }
    return {false, calls.allocations()};
  }
  /// Runs `act` until it makes no allocation that fails any more; `before` makes its place ready.
  /// Whenever it ends by want of memory the place holds what `left` says.
  void failEveryAllocation(const std::function<void()>& before, const std::function<void()>& act,
                           const Names& left) const {
    for (int nth = 1;; ++nth) {
      m_place.empty();
      before();
      const Ended ended = withFailingAllocation(nth, act);
      if (ended.allocations < nth) return;
      if (ended.failed) {
        EXPECT_EQ(m_place.names(), left) << nth;
      }
    }
  }
  /// As a run that was killed leaves it.
  void leave(const std::string& name, const std::string& within) const {
    fs::create_directories(m_place / name / within);
    test_kit::writeFile(m_place / name / within / "album.bin", "half");
  }

  test_kit::ScratchFolder m_place;
};

INSTANTIATE_TEST_SUITE_P(Memory, HiddenFolders, testing::Values(Times::kOnce, Times::kFromThenOn),
                         [](const auto& parameter) {
                           return parameter.param == Times::kOnce ? "Once" : "FromThenOn";
                         });

TEST_P(HiddenFolders, OfAnAlbumAreNotLeftBehind) {
  const fs::path place = m_place / ".";
  failEveryAllocation([] {}, [&] { const velmor::render::WorkingFolder folder(place); }, {});
}

TEST_P(HiddenFolders, OfASetAreNotLeftBehind) {
  const fs::path target = m_place / "set";
  const auto all = [](const std::string&) { return true; };
  failEveryAllocation([] {}, [&] { const velmor::disc::DraftFolder folder(target, false, all); },
                      {});
}

TEST_P(HiddenFolders, ThatReplaceASetLeaveItAsItWas) {
  const fs::path target = m_place / "set";
  const auto all = [](const std::string&) { return true; };
  failEveryAllocation([&] { leave("set", "."); },
                      [&] { const velmor::disc::DraftFolder folder(target, true, all); }, {"set"});
}

TEST_P(HiddenFolders, OfKilledRunsAreLookedForWithoutEndingTheProgram) {
  const fs::path place = m_place / ".";
  const auto descriptors = [] {
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
  };
  const auto open_before = descriptors();
  for (int nth = 1;; ++nth) {
    m_place.empty();
    leave(".velmor-render-abcdef", "files");
    const Ended ended =
        withFailingAllocation(nth, [&] { velmor::render::WorkingFolder::removeAbandoned(place); });
    EXPECT_EQ(descriptors(), open_before) << nth;
    if (ended.allocations < nth) break;
  }
  EXPECT_EQ(m_place.names(), Names());
}

}  // namespace
}  // namespace render_test
