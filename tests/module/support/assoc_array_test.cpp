#include "module/support/assoc_array.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "tests/kit/faults/system_calls.h"

namespace support_test {
namespace {

using test_kit::Call;
using test_kit::SystemCalls;

struct OrderCase {
  const char* a;
  const char* b;
  int order;
};

class ByteOrder : public testing::TestWithParam<OrderCase> {};

TEST_P(ByteOrder, IsThatOfUnsignedBytes) {
  const OrderCase& c = GetParam();
  EXPECT_EQ(YDK_assocarray_cmpstr(&c.a, &c.b), c.order);
  EXPECT_EQ(YDK_assocarray_cmpstr(&c.b, &c.a), -c.order);
}

INSTANTIATE_TEST_SUITE_P(Texts, ByteOrder,
                         testing::Values(OrderCase{"", "", 0}, OrderCase{"a", "a", 0},
                                         OrderCase{"ISRC", "PERFORMER", -1}, OrderCase{"a", "A", 1},
                                         OrderCase{"a", "c", -1}, OrderCase{"\xC3\xA9", "z", 1},
                                         OrderCase{"\xFF", "", 1}, OrderCase{"\x80", "\x7F", 1},
                                         OrderCase{"TITLE", "", 1},
                                         OrderCase{"TITLES", "TITLE", 1}));

TEST(CaselessOrder, SeesNoCase) {
  const char* texts[] = {"TITLE", "Title", "TITLES", "PERFORMER"};
  EXPECT_EQ(YDK_assocarray_cmpistr(&texts[0], &texts[1]), 0);
  EXPECT_LT(YDK_assocarray_cmpistr(&texts[1], &texts[2]), 0);
  EXPECT_GT(YDK_assocarray_cmpistr(&texts[1], &texts[3]), 0);
}

// What the arrays under test have disposed of, in order.
std::vector<std::string> g_disposed;

const char* copyKey(const char* key) {
  return dupstr(key);
}
void disposeKey(const char* key) {
  g_disposed.push_back(std::string("key ") + key);
  freestr(key);
}
void disposeValue(int value) {
  g_disposed.push_back("value " + std::to_string(value));
}

class AssocArray : public testing::Test {
 protected:
  AssocArray() { g_disposed.clear(); }
  using Array = YDK_AssocArrayImpl<const char*, int>;
  Array m_array{YDK_assocarray_cmpistr, copyKey, disposeKey, disposeValue};
};

using Disposed = std::vector<std::string>;

TEST_F(AssocArray, FindsNothingWhenEmpty) {
  EXPECT_EQ(m_array.Find("TITLE"), nullptr);
  EXPECT_EQ(m_array.GetSize(), 0);
}

TEST_F(AssocArray, OwnsACopyOfTheKey) {
  char key[] = "TITLE";
  m_array.Insert(key, 1);
  key[0] = 'X';
  ASSERT_NE(m_array.Find("TITLE"), nullptr);
  EXPECT_EQ(*m_array.Find("TITLE"), 1);
}

TEST_F(AssocArray, ReplacingAValueDisposesOfTheOldOneAndKeepsTheKey) {
  m_array.Insert("TITLE", 1);
  m_array.Insert("Title", 2);
  EXPECT_EQ(m_array.GetSize(), 1);
  EXPECT_EQ(*m_array.Find("title"), 2);
  EXPECT_EQ(g_disposed, Disposed{"value 1"});
  m_array.Clear();
  EXPECT_EQ(g_disposed, (Disposed{"value 1", "key TITLE", "value 2"}));
}

TEST_F(AssocArray, ClearingDisposesInOrderKeyThenValue) {
  m_array.Insert("b", 2);
  m_array.Insert("c", 3);
  m_array.Insert("a", 1);
  m_array.Clear();
  EXPECT_EQ(g_disposed, (Disposed{"key a", "value 1", "key b", "value 2", "key c", "value 3"}));
  EXPECT_EQ(m_array.GetSize(), 0);
  EXPECT_EQ(m_array.Find("a"), nullptr);
  m_array.Clear();
  EXPECT_EQ(g_disposed.size(), 6u);
}

TEST_F(AssocArray, EndingDisposesOfEverythingOnce) {
  {
    Array local(YDK_assocarray_cmpstr, copyKey, disposeKey, disposeValue);
    local.AppendUnsorted("b", 2);
    local.AppendUnsorted("a", 1);
  }
  EXPECT_EQ(g_disposed, (Disposed{"key b", "value 2", "key a", "value 1"}));
}

TEST_F(AssocArray, EachDisposalWorksWithoutTheOther) {
  {
    Array keys_only(YDK_assocarray_cmpstr, copyKey, disposeKey, nullptr);
    keys_only.Insert("a", 1);
    keys_only.Insert("a", 2);
  }
  EXPECT_EQ(g_disposed, Disposed{"key a"});
  g_disposed.clear();
  {
    Array values_only(YDK_assocarray_cmpstr, nullptr, nullptr, disposeValue);
    values_only.Insert("a", 1);
  }
  EXPECT_EQ(g_disposed, Disposed{"value 1"});
}

TEST_F(AssocArray, StoresTheKeyItselfWithoutACopyFunction) {
  static const char* compared = nullptr;
  Array plain(
      [](const char* const* a, const char* const* b) {
        compared = *b;
        return YDK_assocarray_cmpstr(a, b);
      },
      nullptr, nullptr, nullptr);
  const std::string key = "TITLE";
  plain.Insert(key.c_str(), 1);
  plain.Find("TITLE");
  EXPECT_EQ(compared, key.c_str());
}

TEST_F(AssocArray, ComparesTheSoughtKeyFirst) {
  static std::vector<std::string> first;
  first.clear();
  Array plain([](const char* const* a, const char* const* b) {
    first.emplace_back(*a);
    return YDK_assocarray_cmpstr(a, b);
  });
  for (const char* key : {"a", "b", "c"}) plain.AppendUnsorted(key, 0);
  plain.Find("b2");
  EXPECT_EQ(first, (std::vector<std::string>{"b2", "b2"}));
}

TEST_F(AssocArray, SortingDropsKeysThatDifferOnlyInCase) {
  m_array.AppendUnsorted("TITLE", 1);
  m_array.AppendUnsorted("CATALOG", 2);
  m_array.AppendUnsorted("Title", 3);
  EXPECT_EQ(m_array.GetSize(), 3);
  m_array.SortKeys();
  EXPECT_EQ(m_array.GetSize(), 2);
  ASSERT_NE(m_array.Find("catalog"), nullptr);
  ASSERT_NE(m_array.Find("title"), nullptr);
  ASSERT_EQ(g_disposed.size(), 2u);
  const bool first_survived = *m_array.Find("title") == 1;
  EXPECT_EQ(g_disposed, first_survived ? (Disposed{"key Title", "value 3"})
                                       : (Disposed{"key TITLE", "value 1"}));
}

TEST_F(AssocArray, SortingKeepsOfManyEqualKeysTheOneThatWasLoadedFirst) {
  for (int value = 0; value < 100; ++value) {
    m_array.AppendUnsorted(value % 2 == 0 ? "TITLE" : "Title", value);
    m_array.AppendUnsorted("CATALOG", 100 + value);
  }
  m_array.SortKeys();
  ASSERT_EQ(m_array.GetSize(), 2);
  EXPECT_EQ(*m_array.Find("title"), 0);
  EXPECT_EQ(*m_array.Find("catalog"), 100);
}

TEST_F(AssocArray, RemovingDuplicatesKeepsTheFirstOfEachRun) {
  const std::pair<const char*, int> pairs[] = {{"a", 1}, {"A", 2}, {"b", 3}, {"c", 4},
                                               {"C", 5}, {"c", 6}, {"d", 7}};
  for (const auto& [key, value] : pairs) m_array.AppendUnsorted(key, value);
  m_array.RemoveDuplicateKeys();
  EXPECT_EQ(g_disposed, (Disposed{"key A", "value 2", "key C", "value 5", "key c", "value 6"}));
  ASSERT_EQ(m_array.GetSize(), 4);
  for (const auto& [key, value] :
       {std::pair<const char*, int>{"a", 1}, {"b", 3}, {"c", 4}, {"d", 7}}) {
    ASSERT_NE(m_array.Find(key), nullptr) << key;
    EXPECT_EQ(*m_array.Find(key), value);
  }
}

TEST_F(AssocArray, RemovingDuplicatesComparesEachPairWithTheLastThatIsKept) {
  static std::vector<std::pair<const char*, const char*>> compared;
  compared.clear();
  Array plain([](const char* const* a, const char* const* b) {
    compared.emplace_back(*a, *b);
    return YDK_assocarray_cmpistr(a, b);
  });
  const char* const keys[] = {"a", "A", "b", "B", "b"};
  for (const char* key : keys) plain.AppendUnsorted(key, 0);
  plain.RemoveDuplicateKeys();
  const std::vector<std::pair<const char*, const char*>> expected = {
      {keys[1], keys[0]}, {keys[2], keys[0]}, {keys[3], keys[2]}, {keys[4], keys[2]}};
  EXPECT_EQ(compared, expected);
}

TEST_F(AssocArray, RemovingDuplicatesKeepsTheBlockHoweverMuchGoes) {
  // 64000 bytes, of which 32 stay: a buffer that was allowed to shrink would move.
  Array plain(YDK_assocarray_cmpstr);
  for (int i = 0; i < 4000; ++i) plain.AppendUnsorted(i < 2000 ? "a" : "b", i);
  SystemCalls calls;
  plain.RemoveDuplicateKeys();
  EXPECT_EQ(calls.allocationCount(), 0);
  EXPECT_EQ(plain.GetSize(), 2);
  ASSERT_NE(plain.Find("b"), nullptr);
  EXPECT_EQ(*plain.Find("b"), 2000);
}

TEST_F(AssocArray, SortingASinglePairComparesNothing) {
  static int comparisons = 0;
  Array plain([](const char* const* a, const char* const* b) {
    ++comparisons;
    return YDK_assocarray_cmpstr(a, b);
  });
  plain.SortKeys();
  plain.AppendUnsorted("a", 1);
  plain.SortKeys();
  plain.RemoveDuplicateKeys();
  EXPECT_EQ(comparisons, 0);
  EXPECT_EQ(plain.GetSize(), 1);
}

TEST_F(AssocArray, SortingWithoutAComparisonChangesNothing) {
  Array plain(nullptr);
  plain.AppendUnsorted("b", 1);
  plain.AppendUnsorted("b", 2);
  plain.SortKeys();
  EXPECT_EQ(plain.GetSize(), 2);
}

TEST_F(AssocArray, InsertionAgreesWithAMapOfTheLibrary) {
  std::mt19937 random(7);
  std::map<std::string, int> expected;
  for (int i = 0; i < 5000; ++i) {
    const std::string key = "k" + std::to_string(random() % 700);
    m_array.Insert(key.c_str(), i);
    expected[key] = i;
  }
  EXPECT_EQ(m_array.GetSize(), static_cast<int>(expected.size()));
  for (int i = 0; i < 800; ++i) {
    const std::string key = "k" + std::to_string(i);
    const int* found = m_array.Find(key.c_str());
    ASSERT_EQ(found != nullptr, expected.count(key) == 1) << key;
    if (found) {
      EXPECT_EQ(*found, expected[key]);
    }
  }
}

TEST_F(AssocArray, BulkLoadingAgreesWithInsertion) {
  std::mt19937 random(8);
  std::vector<int> numbers(500);
  for (int i = 0; i < 500; ++i) numbers[static_cast<size_t>(i)] = i;
  std::shuffle(numbers.begin(), numbers.end(), random);
  for (const int number : numbers) m_array.AppendUnsorted(std::to_string(number).c_str(), number);
  m_array.SortKeys();
  EXPECT_EQ(m_array.GetSize(), 500);
  for (int i = 0; i < 500; ++i) {
    const int* found = m_array.Find(std::to_string(i).c_str());
    ASSERT_NE(found, nullptr) << i;
    EXPECT_EQ(*found, i);
  }
}

TEST_F(AssocArray, GrowthWithoutMemoryInsertsNothing) {
  // 4000 bytes hold 250 pairs; the next one needs a larger block.
  for (int i = 0; i < 250; ++i) m_array.Insert(std::to_string(i + 1000).c_str(), i);
  {
    SystemCalls calls;
    calls.fail(Call::kRealloc, ENOMEM);
    calls.fail(Call::kMalloc, ENOMEM);
    EXPECT_FALSE(m_array.Insert("new", 1));
    EXPECT_FALSE(m_array.AppendUnsorted("zz", 2));
    EXPECT_TRUE(m_array.Insert("1003", 77)) << "replacing needs no memory";
  }
  EXPECT_EQ(m_array.GetSize(), 250);
  EXPECT_EQ(m_array.Find("new"), nullptr);
  EXPECT_EQ(m_array.Find("zz"), nullptr);
  EXPECT_EQ(*m_array.Find("1003"), 77);
  for (int i = 0; i < 250; ++i) {
    ASSERT_NE(m_array.Find(std::to_string(i + 1000).c_str()), nullptr) << i;
  }
  EXPECT_TRUE(m_array.Insert("new", 1));
  EXPECT_TRUE(m_array.AppendUnsorted("zz", 2));
  EXPECT_EQ(m_array.GetSize(), 252);
}

TEST_F(AssocArray, AKeyThatCannotBeCopiedIsNotInserted) {
  SystemCalls calls;
  calls.fail(Call::kStrdup, ENOMEM, 2, 3);
  EXPECT_TRUE(m_array.Insert("TITLE", 1));
  EXPECT_FALSE(m_array.Insert("PERFORMER", 2));
  EXPECT_FALSE(m_array.AppendUnsorted("CATALOG", 3));
  EXPECT_EQ(m_array.GetSize(), 1);
  EXPECT_TRUE(g_disposed.empty()) << "key and value are still the caller's";
}

TEST(TagSet, KnowsKeysByCase) {
  YDK_AssocArrayImpl<const char*, char> tags(YDK_assocarray_cmpstr, dupstr, freestr, nullptr);
  tags.Insert("ISRC", 1);
  EXPECT_NE(tags.Find("ISRC"), nullptr);
  EXPECT_EQ(tags.Find("isrc"), nullptr);
}

TEST(TagSet, KeepsAPairInSixteenBytes) {
  using TagSet = YDK_AssocArrayImpl<const char*, char>;
  EXPECT_EQ(sizeof(TagSet::KeyVal), 16u);
}

TEST(TextKeys, OwnTheirCopiesOfKeysAndValues) {
  YDK_StringKeyedArray<char*> metadata(false, freecharptr);
  metadata.Insert("TITLE", const_cast<char*>(dupstr("Night Drive")));
  metadata.Insert("title", const_cast<char*>(dupstr("Day Drive")));
  metadata.AppendUnsorted("CATALOG", const_cast<char*>(dupstr("0731452345620")));
  metadata.SortKeys();
  EXPECT_EQ(metadata.GetSize(), 2);
  ASSERT_NE(metadata.Find("Title"), nullptr);
  EXPECT_STREQ(*metadata.Find("Title"), "Day Drive");
}

int compareNumbers(const int* a, const int* b) {
  return *a - *b;
}

TEST(AssocArrayOfPlainKeys, GrowthWithoutMemoryInsertsNothingAndDisposesOfNothing) {
  YDK_AssocArrayImpl<int, int> numbers(compareNumbers);
  SystemCalls calls;
  calls.fail(Call::kRealloc, ENOMEM);
  calls.fail(Call::kMalloc, ENOMEM);
  EXPECT_FALSE(numbers.Insert(1, 10));
  EXPECT_EQ(numbers.GetSize(), 0);
}

TEST(AssocArrayOfBorrowedCopies, GrowthWithoutMemoryLeavesTheCopyToWhoLentIt) {
  // Copies are made by a function of the caller's, and nobody gave one that frees them.
  static char g_lent[] = "lent";
  YDK_AssocArrayImpl<const char*, int> lent(YDK_assocarray_cmpstr,
                                            [](const char*) -> const char* { return g_lent; });
  SystemCalls calls;
  calls.fail(Call::kRealloc, ENOMEM);
  calls.fail(Call::kMalloc, ENOMEM);
  EXPECT_FALSE(lent.Insert("TITLE", 1));
  EXPECT_EQ(lent.GetSize(), 0);
  EXPECT_STREQ(g_lent, "lent");
}

}  // namespace
}  // namespace support_test
