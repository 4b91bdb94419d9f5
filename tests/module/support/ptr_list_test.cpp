#include "module/support/ptr_list.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <vector>

#include "module/support/ydk_string.h"
#include "tests/kit/faults/system_calls.h"

namespace support_test {
namespace {

using test_kit::Call;
using test_kit::SystemCalls;

/// Tells of its end.
class Tracked {
 public:
  Tracked(int number, std::vector<int>& ended) : m_number(number), m_ended(ended) {}
  ~Tracked() { m_ended.push_back(m_number); }
  Tracked(const Tracked&) = delete;
  Tracked& operator=(const Tracked&) = delete;

 private:
  int m_number;
  std::vector<int>& m_ended;
};

TEST(PtrList, GivesItemsInOrderAndNullOutsideIt) {
  int items[3] = {};
  YDK_PtrList<int> list;
  EXPECT_EQ(list.GetSize(), 0);
  EXPECT_EQ(list.Get(0), nullptr);
  for (int& item : items) list.Add(&item);
  EXPECT_EQ(list.GetSize(), 3);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(list.Get(i), &items[i]);
  EXPECT_EQ(list.Get(3), nullptr);
  EXPECT_EQ(list.Get(-1), nullptr);
  list.Empty(false);
  EXPECT_EQ(list.GetSize(), 0);
  EXPECT_EQ(list.Get(0), nullptr);
}

TEST(PtrList, DeletesItsItemsFromTheLastToTheFirst) {
  std::vector<int> ended;
  YDK_PtrList<Tracked> list(8);
  for (int number = 0; number < 5; ++number) list.Add(new Tracked(number, ended));
  list.Empty(true);
  EXPECT_EQ(ended, (std::vector<int>{4, 3, 2, 1, 0}));
  EXPECT_EQ(list.GetSize(), 0);
}

TEST(PtrList, LeavesItsItemsAloneUnlessAsked) {
  std::vector<int> ended;
  Tracked item(1, ended);
  {
    YDK_PtrList<Tracked> list;
    list.Add(&item);
    list.Empty(false);
    list.Add(&item);
  }
  EXPECT_TRUE(ended.empty());
}

TEST(PtrList, PassesOverNullsWhenDeleting) {
  std::vector<int> ended;
  YDK_PtrList<Tracked> list;
  list.Add(new Tracked(0, ended));
  list.Add(nullptr);
  list.Add(new Tracked(2, ended));
  EXPECT_EQ(list.GetSize(), 3);
  EXPECT_EQ(list.Get(1), nullptr);
  list.Empty(true);
  EXPECT_EQ(ended, (std::vector<int>{2, 0}));
}

TEST(PtrList, FreesItsTextsWithTheirBuffers) {
  YDK_PtrList<YDK_String> names;
  for (int i = 0; i < 1000; ++i) {
    names.Add(new YDK_String);
    names.Get(i)->Set("a track's name");
  }
  names.Empty(true);  // leaks are seen in the build that looks for them
  EXPECT_EQ(names.GetSize(), 0);
}

TEST(PtrList, TakesNothingWithoutMemory) {
  int item = 0;
  YDK_PtrList<int> list(8);
  SystemCalls calls;
  calls.fail(Call::kRealloc, ENOMEM);
  calls.fail(Call::kMalloc, ENOMEM);
  EXPECT_EQ(list.Add(&item), nullptr);
  EXPECT_EQ(list.GetSize(), 0);
}

}  // namespace
}  // namespace support_test
