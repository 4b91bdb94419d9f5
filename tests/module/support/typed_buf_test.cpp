#include "module/support/typed_buf.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstdint>

#include "tests/kit/faults/system_calls.h"

namespace support_test {
namespace {

using test_kit::Call;
using test_kit::SystemCalls;

TEST(TypedBuf, CountsElementsNotBytes) {
  YDK_TypedBuf<double> times;
  EXPECT_EQ(times.GetSize(), 0);
  EXPECT_EQ(times.Get(), nullptr);
  times.Resize(3);
  ASSERT_NE(times.Get(), nullptr);
  EXPECT_EQ(times.GetSize(), 3);
  times.Resize(-1);
  EXPECT_EQ(times.GetSize(), 0);
  EXPECT_EQ(times.Get(), nullptr);
}

TEST(TypedBuf, GrowsByTheRuleOfItsBytes) {
  SystemCalls calls;
  YDK_TypedBuf<short> samples(4096);
  samples.Resize(5000);
  EXPECT_EQ(calls.last(Call::kRealloc).size, 12192);
}

TEST(TypedBuf, ShrinksUnlessToldOtherwise) {
  YDK_TypedBuf<short> samples(128);
  samples.Resize(5000);
  SystemCalls calls;
  samples.Resize(50);
  EXPECT_EQ(calls.allocationCount(), 1);
  samples.Resize(1, false);
  EXPECT_EQ(calls.allocationCount(), 1);
}

TEST(TypedBuf, KeepsItsElements) {
  YDK_TypedBuf<int> numbers(16);
  for (int i = 0; i < 10000; ++i) {
    ASSERT_NE(numbers.Resize(i + 1, false), nullptr);
    numbers.Get()[i] = i * 3;
  }
  for (int i = 0; i < 10000; ++i) ASSERT_EQ(numbers.Get()[i], i * 3);
}

TEST(TypedBuf, StaysAsItWasWithoutMemory) {
  YDK_TypedBuf<double> times(8);
  times.Resize(1);
  times.Get()[0] = 2.5;
  SystemCalls calls;
  calls.fail(Call::kRealloc, ENOMEM);
  calls.fail(Call::kMalloc, ENOMEM);
  EXPECT_EQ(times.Resize(1000), times.Get());
  EXPECT_EQ(times.GetSize(), 1);
  EXPECT_EQ(times.Get()[0], 2.5);
}

TEST(TypedBuf, TakesEveryNegativeCountForNone) {
  for (const int count : {-1, INT_MIN, INT_MIN / 8, INT_MIN / 8 - 1}) {
    YDK_TypedBuf<double> times;
    times.Resize(2);
    SystemCalls calls;
    EXPECT_EQ(times.Resize(count), nullptr) << count;
    EXPECT_EQ(times.GetSize(), 0) << count;
    EXPECT_EQ(calls.count(Call::kRealloc) + calls.count(Call::kMalloc), 0) << count;
  }
}

TEST(TypedBuf, RefusesCountsWhoseBytesAnIntCannotHold) {
  for (const int count : {INT_MAX, INT_MAX / 8 + 1, 1 << 29, (1 << 29) + 1}) {
    YDK_TypedBuf<double> times;
    times.Resize(2);
    SystemCalls calls;
    EXPECT_EQ(times.Resize(count), times.Get());
    EXPECT_EQ(times.GetSize(), 2) << count;
    EXPECT_EQ(calls.count(Call::kRealloc) + calls.count(Call::kMalloc), 0) << count;
  }
}

}  // namespace
}  // namespace support_test
