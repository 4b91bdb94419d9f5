#include "module/support/heap_buf.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstring>

#include "tests/kit/faults/system_calls.h"
#include "tests/module/support/recorded_releases.h"

namespace support_test {
namespace {

using test_kit::Call;
using test_kit::CallRecord;
using test_kit::SystemCalls;

/// Bytes of the block that an empty buffer takes for `size`.
int64_t firstAllocation(int granularity, int size) {
  SystemCalls calls;
  YDK_HeapBuf buf(granularity);
  buf.Resize(size);
  EXPECT_EQ(calls.allocationCount(), 1);
  return calls.count(Call::kRealloc) ? calls.last(Call::kRealloc).size
                                     : calls.last(Call::kMalloc).size;
}

struct GrowthCase {
  int granularity;
  int size;
  int64_t allocated;
};

class Growth : public testing::TestWithParam<GrowthCase> {};

TEST_P(Growth, TakesABlockOfTheRuledSize) {
  EXPECT_EQ(firstAllocation(GetParam().granularity, GetParam().size), GetParam().allocated);
}

INSTANTIATE_TEST_SUITE_P(
    InWholePagesLessTheAllocatorsHeader, Growth,
    testing::Values(GrowthCase{4096, 10000, 12192}, GrowthCase{4096, 1, 4000},  //
                    GrowthCase{4096, 3999, 4000},                               //
                    GrowthCase{4096, 4000, 8096},                               //
                    GrowthCase{4096, 16384, 24480},                             //
                    GrowthCase{10000, 1, 8096},                                 //
                    GrowthCase{8192, 40959, 57248},                             //
                    GrowthCase{4096, 131072, 196512},                           //
                    // The step stops growing at 4 MiB.
                    GrowthCase{4096, 8388608, 12582816}, GrowthCase{4096, 8400000, 12591008},
                    GrowthCase{4096, 20000000, 24190880}, GrowthCase{8388608, 1, 4194208},
                    // The 96 bytes count before the sum is rounded down to whole pages.
                    GrowthCase{4096, 8392608, 12586912}));

INSTANTIATE_TEST_SUITE_P(BelowAPageByHalfOrTheGranularity, Growth,
                         testing::Values(GrowthCase{128, 20, 148},     //
                                         GrowthCase{128, 256, 384},    //
                                         GrowthCase{128, 257, 385},    //
                                         GrowthCase{128, 1000, 1500},  //
                                         GrowthCase{128, 1001, 1501},  //
                                         GrowthCase{4095, 10, 4105},   //
                                         // No cap here.
                                         GrowthCase{128, 20000000, 30000000}));

TEST(HeapBuf, IsNullUntilItHoldsSomething) {
  YDK_HeapBuf buf;
  EXPECT_EQ(buf.GetSize(), 0);
  EXPECT_EQ(buf.Get(), nullptr);
  EXPECT_EQ(buf.Resize(0), nullptr);
  EXPECT_EQ(buf.Resize(-5), nullptr);
  EXPECT_NE(buf.Resize(1), nullptr);
  EXPECT_EQ(buf.GetSize(), 1);
}

TEST(HeapBuf, GrowsInsideItsBlockWithoutAllocating) {
  YDK_HeapBuf buf(4096);
  void* block = buf.Resize(10000);
  SystemCalls calls;
  for (int size = 10001; size <= 12192; ++size) EXPECT_EQ(buf.Resize(size), block);
  EXPECT_EQ(calls.allocationCount(), 0);
  buf.Resize(12193);
  EXPECT_EQ(calls.allocationCount(), 1);
}

TEST(HeapBuf, ResizingToTheSameSizeAllocatesNothing) {
  for (const bool shrink : {false, true}) {
    YDK_HeapBuf buf(128);
    buf.Resize(10000);
    void* block = buf.Resize(7500, false);
    SystemCalls calls;
    EXPECT_EQ(buf.Resize(7500, shrink), block);
    EXPECT_EQ(calls.allocationCount(), 0);
  }
}

TEST(HeapBuf, ResizingToTheSameSizeAllocatesNothingEvenFarBelowTheThreshold) {
  YDK_HeapBuf buf(128);
  buf.Resize(10000);
  void* block = buf.Resize(10, false);
  SystemCalls calls;
  EXPECT_EQ(buf.Resize(10, true), block);
  EXPECT_EQ(calls.allocationCount(), 0);
}

TEST(HeapBuf, ANegativeSizeFreesTheBlock) {
  YDK_HeapBuf buf(128);
  buf.Resize(100);
  EXPECT_EQ(buf.Resize(-5), nullptr);
  EXPECT_EQ(buf.GetSize(), 0);
  SystemCalls calls;
  buf.Resize(10);
  EXPECT_EQ(calls.allocationCount(), 1) << "the old block was kept";
}

TEST(HeapBuf, SizeZeroWithoutShrinkingKeepsTheBlock) {
  YDK_HeapBuf buf(128);
  void* block = buf.Resize(100);
  EXPECT_EQ(buf.Resize(0, false), nullptr);
  EXPECT_EQ(buf.Get(), nullptr);
  EXPECT_EQ(buf.GetSize(), 0);
  SystemCalls calls;
  EXPECT_EQ(buf.Resize(0, true), nullptr) << "the size has not changed, so nothing has";
  EXPECT_EQ(buf.Resize(50), block);
  EXPECT_EQ(calls.allocationCount(), 0);
}

TEST(HeapBuf, ABlockOfThreePagesIsKeptForEverySizeButZero) {
  YDK_HeapBuf buf(4096);
  void* block = buf.Resize(10000);
  SystemCalls calls;
  for (const int size : {9999, 6096, 4096, 100, 1}) EXPECT_EQ(buf.Resize(size, true), block);
  EXPECT_EQ(calls.allocationCount(), 0);
  EXPECT_EQ(buf.Resize(0, true), nullptr);
  buf.Resize(1);
  EXPECT_EQ(calls.allocationCount(), 1);
}

struct ShrinkCase {
  int granularity;
  int size;
  int threshold;        ///< smallest size that keeps the block
  int64_t reallocated;  ///< the block for one byte less
};

class Shrinking : public testing::TestWithParam<ShrinkCase> {};

TEST_P(Shrinking, ReallocatesBelowTheThresholdOnly) {
  const ShrinkCase& c = GetParam();
  YDK_HeapBuf buf(c.granularity);
  void* block = buf.Resize(c.size);
  memset(block, 0x5A, static_cast<size_t>(c.size));
  SystemCalls calls;
  EXPECT_EQ(buf.Resize(c.threshold, true), block);
  EXPECT_EQ(calls.allocationCount(), 0);
  const auto* bytes = static_cast<const char*>(buf.Resize(c.threshold - 1, true));
  ASSERT_EQ(calls.allocationCount(), 1);
  EXPECT_EQ(calls.last(Call::kRealloc).size, c.reallocated);
  EXPECT_EQ(buf.GetSize(), c.threshold - 1);
  EXPECT_EQ(bytes[c.threshold - 2], 0x5A);
}

TEST_P(Shrinking, NeverReallocatesUnlessAllowed) {
  const ShrinkCase& c = GetParam();
  YDK_HeapBuf buf(c.granularity);
  void* block = buf.Resize(c.size);
  SystemCalls calls;
  EXPECT_EQ(buf.Resize(c.threshold - 1, false), block);
  EXPECT_EQ(buf.Resize(1, false), block);
  EXPECT_EQ(calls.allocationCount(), 0);
}

// Half of the block, or the block less four granularities where that is smaller.
INSTANTIATE_TEST_SUITE_P(Thresholds, Shrinking,
                         testing::Values(ShrinkCase{128, 10000, 7500, 11248},
                                         ShrinkCase{128, 400, 88, 215},
                                         ShrinkCase{4096, 131072, 98256, 143264},
                                         ShrinkCase{4096, 16384, 8096, 8096},
                                         ShrinkCase{4096, 40959, 28624, 40864}));

TEST(HeapBuf, ShrinksUnlessToldOtherwise) {
  YDK_HeapBuf buf(128);
  buf.Resize(10000);
  SystemCalls calls;
  buf.Resize(100);
  EXPECT_EQ(calls.allocationCount(), 1);
  EXPECT_EQ(calls.last(Call::kRealloc).size, 228);
}

TEST(HeapBuf, ContentsSurviveEveryGrowth) {
  YDK_HeapBuf buf(16);
  for (int size = 1; size < 3000; ++size) {
    auto* bytes = static_cast<unsigned char*>(buf.Resize(size));
    ASSERT_NE(bytes, nullptr);
    bytes[size - 1] = static_cast<unsigned char>(size * 7);
  }
  const auto* bytes = static_cast<const unsigned char*>(buf.Get());
  for (int i = 0; i < 2999; ++i) ASSERT_EQ(bytes[i], static_cast<unsigned char>((i + 1) * 7));
}

TEST(HeapBuf, AFailedReallocIsMadeUpForByAFreshBlock) {
  YDK_HeapBuf buf(128);
  strcpy(static_cast<char*>(buf.Resize(20)), "pregap");
  SystemCalls calls;
  calls.fail(Call::kRealloc, ENOMEM);
  auto* text = static_cast<char*>(buf.Resize(1000));
  EXPECT_EQ(calls.count(Call::kRealloc), 1);
  EXPECT_EQ(calls.count(Call::kMalloc), 1);
  EXPECT_EQ(calls.last(Call::kMalloc).size, 1500);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(buf.GetSize(), 1000);
  EXPECT_STREQ(text, "pregap");
  memset(text, 1, 1000);
  calls.forget();
  buf.Resize(1500);
  EXPECT_EQ(calls.allocationCount(), 0) << "the fresh block's size is not known";
}

TEST(HeapBuf, AFreshBlockTakesEvenASingleByteOverAndFreesTheOldOne) {
  YDK_HeapBuf buf(128);
  auto* const old = static_cast<char*>(buf.Resize(1));
  *old = 'x';
  SystemCalls calls;
  const RecordedReleases recorded;
  calls.fail(Call::kRealloc, ENOMEM);
  const auto* bytes = static_cast<const char*>(buf.Resize(1000));
  ASSERT_NE(bytes, nullptr);
  EXPECT_EQ(bytes[0], 'x');
  EXPECT_EQ(recorded.timesFreed(old), 1);
}

TEST(HeapBuf, AFreshBlockForFewerBytesTakesOnlyThoseOver) {
  YDK_HeapBuf buf(128);
  memset(buf.Resize(10000), 7, 10000);
  SystemCalls calls;
  calls.fail(Call::kRealloc, ENOMEM);
  const auto* bytes = static_cast<const char*>(buf.Resize(100, true));
  ASSERT_NE(bytes, nullptr);
  EXPECT_EQ(calls.last(Call::kMalloc).size, 228);
  EXPECT_EQ(bytes[99], 7);
}

TEST(HeapBuf, WithoutMemoryEverythingStaysAsItWas) {
  YDK_HeapBuf buf(128);
  char* old = static_cast<char*>(buf.Resize(20));
  strcpy(old, "pregap");
  SystemCalls calls;
  calls.fail(Call::kRealloc, ENOMEM);
  calls.fail(Call::kMalloc, ENOMEM);
  EXPECT_EQ(buf.Resize(1000), old);
  EXPECT_EQ(buf.GetSize(), 20);
  EXPECT_EQ(buf.Get(), old);
  EXPECT_STREQ(old, "pregap");
  EXPECT_EQ(buf.Resize(148), old) << "the size of the old block is forgotten";
  EXPECT_EQ(buf.GetSize(), 148);
}

TEST(HeapBuf, WithoutMemoryAnEmptyBufferStaysEmpty) {
  SystemCalls calls;
  calls.fail(Call::kRealloc, ENOMEM);
  calls.fail(Call::kMalloc, ENOMEM);
  YDK_HeapBuf buf;
  EXPECT_EQ(buf.Resize(10), nullptr);
  EXPECT_EQ(buf.GetSize(), 0);
  EXPECT_EQ(buf.Get(), nullptr);
}

TEST(HeapBuf, AFailedShrinkKeepsSizeAndBlock) {
  YDK_HeapBuf buf(128);
  void* old = buf.Resize(10000);
  SystemCalls calls;
  calls.fail(Call::kRealloc, ENOMEM);
  calls.fail(Call::kMalloc, ENOMEM);
  EXPECT_EQ(buf.Resize(100, true), old);
  EXPECT_EQ(buf.GetSize(), 10000);
}

TEST(HeapBuf, SizesNearTwoGigabytesNeverAskForABlockSmallerThanTheSize) {
  for (const int granularity : {16, 128, 4095, 4096, 65536, INT_MAX}) {
    for (const int size :
         {1431655764, 1431655766, 2143289344, INT_MAX - 4096, INT_MAX - 1, INT_MAX}) {
      YDK_HeapBuf buf(granularity);
      SystemCalls calls;
      calls.fail(Call::kRealloc, ENOMEM);
      calls.fail(Call::kMalloc, ENOMEM);
      EXPECT_EQ(buf.Resize(size), nullptr);
      EXPECT_EQ(buf.GetSize(), 0);
      for (const Call call : {Call::kRealloc, Call::kMalloc}) {
        for (const CallRecord& record : calls.records(call)) {
          EXPECT_GE(record.size, size) << granularity;
          EXPECT_LE(record.size, INT_MAX) << granularity << " " << size;
        }
      }
    }
  }
}

TEST(HeapBuf, AHugeGranularityDoesNotOverflowTheShrinkThreshold) {
  YDK_HeapBuf buf(INT_MAX);
  void* block = buf.Resize(5000);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(buf.Resize(10, true), block);
}

}  // namespace
}  // namespace support_test
