#include "module/support/ydk_string.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <string>

#include "tests/kit/faults/system_calls.h"

namespace support_test {
namespace {

using test_kit::Call;
using test_kit::SystemCalls;

void failAllocations(SystemCalls& calls) {
  calls.fail(Call::kRealloc, ENOMEM);
  calls.fail(Call::kMalloc, ENOMEM);
}

TEST(String, ThatWasNeverSetReadsAsEmpty) {
  YDK_String title;
  ASSERT_NE(title.Get(), nullptr);
  EXPECT_STREQ(title.Get(), "");
  EXPECT_EQ(title.GetLength(), 0);
}

TEST(String, NeverSetSharesOneCharacterThatDoesNotKeepWhatIsWritten) {
  YDK_String title;
  YDK_String performer;
  char* shared = title.Get();
  EXPECT_EQ(performer.Get(), shared);
  *shared = 'x';
  EXPECT_STREQ(title.Get(), "");
  *shared = 'x';
  EXPECT_STREQ(performer.Get(), "");
}

struct SetCase {
  const char* text;
  int maxlen;
  const char* result;
};

class Setting : public testing::TestWithParam<SetCase> {};

TEST_P(Setting, TakesAtMostTheLimit) {
  YDK_String text;
  text.Set(GetParam().text, GetParam().maxlen);
  EXPECT_STREQ(text.Get(), GetParam().result);
  YDK_String longer;
  longer.Set("something longer before");
  longer.Set(GetParam().text, GetParam().maxlen);
  EXPECT_STREQ(longer.Get(), GetParam().result);
  EXPECT_EQ(longer.GetLength(), static_cast<int>(std::string(GetParam().result).size()));
}

TEST_P(Setting, AppendingTakesAtMostTheLimitToo) {
  YDK_String text;
  text.Append(GetParam().text, GetParam().maxlen);
  EXPECT_STREQ(text.Get(), GetParam().result);
  text.Append(GetParam().text, GetParam().maxlen);
  EXPECT_EQ(text.Get(), std::string(GetParam().result) + GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Limits, Setting,
                         testing::Values(SetCase{"abcdef", 3, "abc"}, SetCase{"ab", 10, "ab"},
                                         SetCase{"abc", 0, "abc"}, SetCase{"abc", -1, "abc"},
                                         SetCase{"abc", 3, "abc"}, SetCase{"", 0, ""},
                                         SetCase{"", 5, ""}, SetCase{nullptr, 0, ""},
                                         SetCase{nullptr, 5, ""}, SetCase{"a\0b", 3, "a"}));

TEST(String, ReadsNoByteBeyondTheLimit) {
  auto* unterminated = new char[3]{'a', 'b', 'c'};
  YDK_String text;
  text.Set(unterminated, 3);
  text.Append(unterminated, 2);
  delete[] unterminated;
  EXPECT_STREQ(text.Get(), "abcab");
}

TEST(String, IsAsLongAsItsTextUpToTheFirstZero) {
  YDK_String text;
  text.Set("Night Drive");
  text.Get()[5] = 0;
  EXPECT_EQ(text.GetLength(), 5);
  text.Append("fall");
  EXPECT_STREQ(text.Get(), "Nightfall");
  EXPECT_EQ(text.GetLength(), 9);
  text.Get()[0] = 0;
  EXPECT_EQ(text.GetLength(), 0);
}

TEST(String, SettingNothingInANeverSetOneGivesItABlock) {
  for (const char* nothing : {"", static_cast<const char*>(nullptr)}) {
    YDK_String text;
    const char* shared = YDK_String().Get();
    SystemCalls calls;
    text.Set(nothing);
    ASSERT_EQ(calls.allocationCount(), 1);
    EXPECT_NE(text.Get(), shared);
    EXPECT_STREQ(text.Get(), "");
    EXPECT_EQ(text.GetLength(), 0);
  }
}

TEST(String, SettingNothingInALongOneKeepsItsBlock) {
  YDK_String text;
  text.Set(std::string(10000, 'x').c_str());
  const char* const block = text.Get();
  SystemCalls calls;
  text.Set("");
  EXPECT_EQ(calls.allocationCount(), 0);
  EXPECT_EQ(text.Get(), block);
  EXPECT_STREQ(text.Get(), "");
}

TEST(String, AppendingNothingToANeverSetOneGivesItABlock) {
  for (const char* nothing : {"", static_cast<const char*>(nullptr)}) {
    YDK_String text;
    const char* shared = YDK_String().Get();
    SystemCalls calls;
    text.Append(nothing);
    EXPECT_EQ(calls.allocationCount(), 1);
    EXPECT_NE(text.Get(), shared);
    EXPECT_STREQ(text.Get(), "");
    EXPECT_EQ(text.GetLength(), 0);
  }
}

TEST(String, SettingNothingKeepsTheBlock) {
  YDK_String text;
  text.Set("The Lanterns");
  const char* block = text.Get();
  SystemCalls calls;
  text.Set("");
  EXPECT_STREQ(text.Get(), "");
  EXPECT_EQ(text.Get(), block);
  text.Set(nullptr);
  text.Set("Night Drive");
  EXPECT_EQ(text.Get(), block);
  EXPECT_STREQ(text.Get(), "Night Drive");
  EXPECT_EQ(calls.allocationCount(), 0);
}

TEST(String, AShorterTextKeepsTheBlockOfALongerOne) {
  YDK_String text;
  text.Set(std::string(5000, 'x').c_str());
  const char* block = text.Get();
  SystemCalls calls;
  text.Set("ab");
  EXPECT_EQ(text.Get(), block);
  EXPECT_STREQ(text.Get(), "ab");
  text.Append(std::string(4998, 'y').c_str());
  EXPECT_EQ(text.Get(), block);
  EXPECT_EQ(calls.allocationCount(), 0);
}

struct PutCase {
  const char* before;
  int offset;
  const char* s;
  int len;
  int tail;
  const char* after;
};

class Putting : public testing::TestWithParam<PutCase> {};

TEST_P(Putting, KeepsTheHeadPutsTheTextAndKeepsTheTail) {
  const PutCase& c = GetParam();
  for (const int granularity : {1, 128}) {
    YDK_String text(granularity);
    text.Set(c.before);
    text.__doSet(c.offset, c.s, c.len, c.tail);
    EXPECT_STREQ(text.Get(), c.after);
    EXPECT_EQ(text.GetLength(), static_cast<int>(std::string(c.after).size()));
  }
}

INSTANTIATE_TEST_SUITE_P(Branches, Putting,
                         testing::Values(PutCase{"abcdef", 0, "XY", 2, 0, "XY"},        //
                                         PutCase{"abcdef", 3, "XY", 2, 0, "abcXY"},     //
                                         PutCase{"abcdef", 6, "XY", 2, 0, "abcdefXY"},  //
                                         PutCase{"abcdef", 3, "XY", 2, 3, "abcXYdef"},  //
                                         PutCase{"abcdef", 0, "XY", 2, 6, "XYabcdef"},  //
                                         PutCase{"abcdef", 1, "XY", 2, 2, "aXYbc"},     //
                                         PutCase{"abcdef", 5, "XY", 2, 1, "abcdeXYf"},  //
                                         PutCase{"abcdef", 0, "X", 0, 1, "abcdef"},     //
                                         PutCase{"abcdef", 1, "LONGER", 6, 5, "aLONGERbcdef"},
                                         PutCase{"abcdef", 0, "XYZ", 1, 0,
                                                 "X"},                         // only `len` bytes
                                         PutCase{"abcdef", 0, "X", 0, 0, ""},  //
                                         PutCase{"abcdef", 2, "X", 0, 0, "abcdef"},
                                         PutCase{"abcdef", 0, "X", 0, 3, "abcdef"},
                                         PutCase{"abcdef", 2, "X", 0, 3, "abcdef"},
                                         PutCase{"abcdef", 0, "X", -1, 0, "abcdef"},
                                         PutCase{"abcdef", -1, "X", 1, 0, "abcdef"}));

TEST(String, AppendsItsOwnTextAcrossAReallocation) {
  for (const int granularity : {1, 128, 4096}) {
    YDK_String text(granularity);
    text.Set("0123456789");
    std::string expected = text.Get();
    for (int round = 0; round < 12; ++round) {
      text.Append(text.Get());
      expected += expected;
      ASSERT_EQ(text.Get(), expected);
    }
  }
}

TEST(String, AppendsAPieceOfItselfWhenTheBlockHasToMove) {
  YDK_String text(1);
  text.Set("0123456789");
  SystemCalls calls;
  calls.fail(Call::kRealloc, ENOMEM);  // the fresh block lies elsewhere, and the old one is freed
  text.Append(text.Get() + 4, 6);
  EXPECT_EQ(calls.count(Call::kMalloc), 1);
  EXPECT_STREQ(text.Get(), "0123456789456789");
}

TEST(String, SetsItselfToAPieceOfItself) {
  YDK_String text;
  text.Set("perf=Ana");
  text.Set(text.Get() + 5);
  EXPECT_STREQ(text.Get(), "Ana");
}

TEST(String, StaysAsItWasWithoutMemory) {
  YDK_String text;
  text.Set("Intro");
  const std::string longer(1000, 'x');
  SystemCalls calls;
  failAllocations(calls);
  text.Set(longer.c_str());
  EXPECT_STREQ(text.Get(), "Intro");
  text.Append(longer.c_str());
  EXPECT_STREQ(text.Get(), "Intro");
  text.__doSet(1, longer.c_str(), 1000, 4);
  EXPECT_STREQ(text.Get(), "Intro");
  text.Append(text.Get());
  EXPECT_STREQ(text.Get(), "IntroIntro") << "the old block had room";
}

TEST(String, ThatWasNeverSetStaysReadableWithoutMemory) {
  SystemCalls calls;
  failAllocations(calls);
  YDK_String text;
  text.Set("Intro");
  EXPECT_STREQ(text.Get(), "");
  text.Set("");
  text.Append("");
  EXPECT_STREQ(text.Get(), "");
  EXPECT_EQ(text.GetLength(), 0);
}

TEST(String, SizesBeyondAnIntHaveNoEffect) {
  YDK_String text;
  text.Set("Intro");
  SystemCalls calls;
  failAllocations(calls);
  text.__doSet(0, "X", INT_MAX, 0);
  text.__doSet(INT_MAX, "X", 1, 0);
  text.__doSet(0, "X", 1, INT_MAX);
  text.__doSet(INT_MAX, "X", INT_MAX, INT_MAX);
  EXPECT_STREQ(text.Get(), "Intro");
}

TEST(String, ANegativeTailChangesNothing) {
  YDK_String title;
  title.Set("Night Drive");
  title.__doSet(0, "Day", 3, -1);
  EXPECT_STREQ(title.Get(), "Night Drive");
}

/// Two gigabytes of the letter x and a zero, of which the memory holds four megabytes.
class HugeText {
 public:
  HugeText() {
    const int pages = memfd_create("x", MFD_CLOEXEC);
    const std::string letters(kPiece, 'x');
    EXPECT_EQ(write(pages, letters.data(), kPiece), static_cast<ssize_t>(kPiece));
    m_text = static_cast<char*>(
        mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    EXPECT_NE(static_cast<void*>(m_text), MAP_FAILED);
    for (size_t at = 0; at + kPiece < kSize; at += kPiece) {
      EXPECT_NE(mmap(m_text + at, kPiece, PROT_READ, MAP_SHARED | MAP_FIXED, pages, 0), MAP_FAILED);
    }
    close(pages);
  }
  ~HugeText() { munmap(m_text, kSize); }
  HugeText(const HugeText&) = delete;
  HugeText& operator=(const HugeText&) = delete;

  const char* get() const { return m_text; }

 private:
  static constexpr size_t kPiece = 4 << 20;
  /// The last piece is the anonymous memory below, which begins with the zero.
  static constexpr size_t kSize = (size_t{1} << 31) + kPiece;

  char* m_text = nullptr;
};

TEST(String, ATextThatAnIntCannotCountIsNotTaken) {
  const HugeText huge;
  YDK_String title;
  title.Set("Night Drive");
  title.Set(huge.get());
  EXPECT_STREQ(title.Get(), "Night Drive");
  title.Append(huge.get());
  EXPECT_STREQ(title.Get(), "Night Drive");
}

}  // namespace
}  // namespace support_test
