// What one track reads from the image, and with which system calls.
#include "abi/track_source.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <memory>
#include <random>

#include "module/burn/track_offsets.h"
#include "module/support/file_read.h"
#include "tests/kit/faults/system_calls.h"
#include "tests/module/burn/image_file.h"

namespace burn_test {
namespace {

using test_kit::Call;
using test_kit::SystemCalls;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kFill = 32768;
constexpr int kStaggeredFill = 16384;

std::vector<int64_t> fills(const SystemCalls& calls) {
  std::vector<int64_t> sizes;
  for (const auto& record : calls.records(Call::kPread)) sizes.push_back(record.size);
  return sizes;
}

class TrackSource : public testing::Test {
 protected:
  void cut(const std::vector<int>& sectors) {
    int at = 0;
    for (const int count : sectors) {
      auto& source = m_sources.emplace_back(std::make_unique<CDBurnTrackSource>());
      source->file = &m_reader;
      source->posbytes = at * kSector;
      source->lenbytes = count * kSector;
      at += count;
    }
  }
  std::string ask(size_t track, uint32_t length) {
    std::string block(length, '\0');
    const uint32_t got = m_sources[track]->ProduceData(block.data(), length);
    EXPECT_LE(got, length);
    block.resize(std::min(got, length));
    return block;
  }

  ImageFile m_image{1000 * kSector};
  YDK_FileRead m_reader{m_image.path.c_str()};
  std::vector<std::unique_ptr<CDBurnTrackSource>> m_sources;
};

TEST_F(TrackSource, TracksAskedForInAnyOrderAndAnyPiecesGiveTheImage) {
  std::mt19937 random(20261120);
  cut({100, 1, 300, 399, 200});
  for (int round = 0; round < 20; ++round) {
    std::vector<std::string> audio(m_sources.size());
    for (int request = 0; request < 2000; ++request) {
      const size_t track = random() % m_sources.size();
      const auto length = static_cast<uint32_t>(random() % (request % 3 == 0 ? 40000 : 3000));
      if (random() % 500 == 0) {
        ASSERT_TRUE(m_sources[track]->PrepareTrackForVerification());
        audio[track].clear();
      }
      audio[track] += ask(track, length);
    }
    std::string disc;
    for (size_t i = 0; i < m_sources.size(); ++i) {
      for (std::string rest = ask(i, 30576); !rest.empty(); rest = ask(i, 30576)) audio[i] += rest;
      disc += audio[i];
    }
    ASSERT_TRUE(disc == m_image.bytes) << "round " << round;
    for (const auto& source : m_sources) source->PrepareTrackForVerification();
  }
}

TEST_F(TrackSource, ATrackEndsAtItsLengthHoweverMuchIsAskedFor) {
  cut({10, 10});
  EXPECT_EQ(ask(0, 100 * kSector), m_image.bytes.substr(0, 10 * kSector));
  EXPECT_EQ(ask(0, kSector), "");
  EXPECT_EQ(ask(1, 9 * kSector + 1).size(), size_t{9 * kSector + 1});
  EXPECT_EQ(ask(1, kSector).size(), size_t{kSector - 1});
}

TEST_F(TrackSource, VerificationStartsTheTrackAnewAndTheReaderAtTheImagesBeginning) {
  cut({10, 10});
  ask(1, 3 * kSector);
  EXPECT_TRUE(m_sources[1]->PrepareTrackForVerification());
  EXPECT_EQ(m_sources[1]->rdpos, 0);
  EXPECT_EQ(m_reader.GetPosition(), 0);
  EXPECT_EQ(ask(1, kSector), m_image.bytes.substr(10 * kSector, kSector));
}

TEST_F(TrackSource, ASequenceOfSectorsIsReadInFillsOf32768Bytes) {
  cut({1000});
  ask(0, kSector);  // the first fill has a length of its own
  SystemCalls calls;
  for (int i = 1; i < 140; ++i) ask(0, kSector);
  EXPECT_EQ(calls.count(Call::kPread), calls.systemCallCount()) << "nothing but reads";
  EXPECT_THAT(fills(calls), testing::Each(kFill));
  EXPECT_LE(calls.count(Call::kPread), 140 * kSector / kFill + 1);
}

TEST_F(TrackSource, TheFirstFillAfterASeekIsAlternatelyWholeAndHalf) {
  cut({250, 250, 250, 250});
  ask(0, kSector);
  SystemCalls calls;
  for (const size_t track : {1u, 2u, 3u, 0u}) ask(track, kSector);
  const std::vector<int64_t> sizes = fills(calls);
  const int64_t first = sizes.empty() ? 0 : sizes[0];
  EXPECT_TRUE(first == kFill || first == kStaggeredFill) << first;
  const int64_t second = kFill + kStaggeredFill - first;
  EXPECT_THAT(sizes, ElementsAre(first, second, first, second));
}

TEST_F(TrackSource, ASeekInsideTheBufferIsNoSystemCall) {
  cut({1, 1, 1, 1, 996});
  ask(0, 1);
  SystemCalls calls;
  for (const size_t track : {3u, 1u, 2u, 0u, 4u}) {
    EXPECT_EQ(ask(track, 100).size(), 100u);
    m_sources[track]->rdpos = 0;
  }
  EXPECT_EQ(calls.systemCallCount(), 0);
}

TEST_F(TrackSource, AReadThatFailsIsAShortAnswerWhileBuffered) {
  cut({1000});
  ask(0, kSector);
  SystemCalls calls;
  calls.fail(Call::kPread, EIO);
  std::string block(60000, '\0');
  const uint32_t got = m_sources[0]->ProduceData(block.data(), 60000);
  EXPECT_LT(got, 60000u);
  EXPECT_EQ(block.substr(0, got), m_image.bytes.substr(kSector, got));
  EXPECT_EQ(m_sources[0]->ProduceData(block.data(), 100), 0u);
}

TEST_F(TrackSource, AReadThatFailsWithoutABufferIsAnAnswerAboveTheAskedLength) {
  SystemCalls calls;
  calls.fail(Call::kRealloc, ENOMEM);
  calls.fail(Call::kMalloc, ENOMEM);
  YDK_FileRead unbuffered(m_image.path.c_str());
  calls.fail(Call::kRealloc, 0, 0, -1);
  calls.fail(Call::kMalloc, 0, 0, -1);
  CDBurnTrackSource source;
  source.file = &unbuffered;
  source.lenbytes = 10 * kSector;
  char block[kSector];
  ASSERT_EQ(source.ProduceData(block, kSector), uint32_t{kSector});
  ASSERT_EQ(calls.records(Call::kPread).back().size, kSector) << "it is unbuffered";
  calls.fail(Call::kPread, EIO);
  EXPECT_EQ(source.ProduceData(block, kSector), UINT32_MAX) << "a failure, never data";
  EXPECT_EQ(unbuffered.GetPosition(), kSector - 1) << "a failed read moves it back by one byte";
  EXPECT_EQ(source.rdpos, kSector - 1);
}

TEST(TrackLength, IsInBlocksAndItsSumWraps) {
  EXPECT_EQ(trackLengthInBlocks(0), 0u);
  EXPECT_EQ(trackLengthInBlocks(1), 1u);
  EXPECT_EQ(trackLengthInBlocks(kSector), 1u);
  EXPECT_EQ(trackLengthInBlocks(kSector + 1), 2u);
  EXPECT_EQ(trackLengthInBlocks(INT_MAX - 2351), uint64_t{INT_MAX / kSector});
  EXPECT_EQ(trackLengthInBlocks(INT_MAX),
            static_cast<uint64_t>(int64_t{(INT_MIN + 2350) / kSector}));
  EXPECT_EQ(trackLengthInBlocks(-kSector), 0u);
  EXPECT_EQ(trackLengthInBlocks(-2 * kSector - 2351), static_cast<uint64_t>(int64_t{-2}));
}

TEST(TrackSourceAtTheEdge, A32BitPositionWrapsAndReadsNothingBeyondTheImage) {
  const ImageFile image(10 * kSector);
  YDK_FileRead reader(image.path.c_str());
  CDBurnTrackSource source;
  source.file = &reader;
  char block[kSector];
  source.posbytes = INT_MAX;
  source.lenbytes = 10 * kSector;
  source.rdpos = kSector;  // wraps below 0, which is the image's beginning
  EXPECT_EQ(source.ProduceData(block, kSector), uint32_t{kSector});
  EXPECT_EQ(std::string(block, kSector), image.bytes.substr(0, kSector));
  source.posbytes = INT_MAX;
  source.rdpos = 0;
  EXPECT_EQ(source.ProduceData(block, kSector), 0u);
  source.posbytes = 0;
  source.lenbytes = -kSector;
  EXPECT_EQ(source.ProduceData(block, kSector), 0u) << "a track that ends before it begins";
}

struct Start {
  double seconds;
  int byte;
};

class TrackOffset : public testing::TestWithParam<Start> {};

TEST_P(TrackOffset, IsThatOfTheSectorThatHoldsTheStart) {
  EXPECT_EQ(trackByteOffset(GetParam().seconds), GetParam().byte);
}

INSTANTIATE_TEST_SUITE_P(
    Starts, TrackOffset,
    testing::Values(Start{0.0, 0}, Start{1.0, 176400}, Start{1.01, 176400}, Start{2.0, 352800},
                    Start{1.0 / 75, 2352}, Start{587.4 / 44100, 0}, Start{587.5 / 44100, 2352},
                    Start{4799.0, 846543600}, Start{12173.0, 2147317200},
                    // Past 2^31 bytes, over three hours: the product wraps, truncated towards 0.
                    Start{12174.0, -2147472432}, Start{24347.0, -155232}, Start{24348.0, 18816}));

}  // namespace
}  // namespace burn_test
