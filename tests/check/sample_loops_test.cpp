// Each form of the scan's loops, held against loops that go from sample to sample.

#include "check/samples/sample_loops.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace velmor::check::test {
namespace {

constexpr size_t kBefore = kTurnsLookBack, kBehind = kTurnsLookAhead;

std::vector<SampleLoops> allLoops() {
  const auto vectors = vectorLoops();
  std::vector<SampleLoops> all(vectors.begin(), vectors.end());
  all.push_back(kPlainLoops);
  return all;
}

/// A sector, with what lies before and behind it.
class Sector {
 public:
  int16_t& operator[](size_t i) { return m_samples[kBefore + i]; }
  const int16_t* begin() const { return m_samples.data() + kBefore; }
  int16_t& before(size_t i) { return m_samples[kBefore - 1 - i]; }
  int16_t& behind(size_t i) { return m_samples[kBefore + kSectorSamples + i]; }

  int low() const { return *std::min_element(begin(), begin() + kSectorSamples); }
  int high() const { return *std::max_element(begin(), begin() + kSectorSamples); }
  bool silent(size_t channel) const {
    for (size_t i = channel; i < kSectorSamples; i += 2)
      if (std::abs(int{begin()[i]}) > 2) return false;
    return true;
  }
  bool same() const {
    for (size_t i = 0; i < kSectorSamples; i += 2)
      if (std::abs(begin()[i] - begin()[i + 1]) > 2) return false;
    return true;
  }
  /// Places of the samples at full scale.
  std::vector<size_t> full() const {
    std::vector<size_t> places;
    for (size_t i = 0; i < kSectorSamples; ++i)
      if (begin()[i] == 32767 || begin()[i] == -32768) places.push_back(i);
    return places;
  }
  /// Those that are the second, or the last, of three or more that are equal.
  std::vector<size_t> turns(bool second) const {
    std::vector<size_t> places;
    for (const size_t i : full()) {
      const int16_t* s = begin() + i;
      const bool two = s[-2] == s[0], before = two && s[-4] == s[0], behind = s[2] == s[0];
      if (second ? two && !before && behind : before && !behind) places.push_back(i);
    }
    return places;
  }

 private:
  std::vector<int16_t> m_samples = std::vector<int16_t>(kBefore + kSectorSamples + kBehind);
};

std::vector<size_t> placesOf(const std::vector<BlockTurns>& blocks, uint64_t BlockTurns::*which) {
  std::vector<size_t> places;
  for (const BlockTurns& b : blocks)
    for (size_t i = 0; i < kBlockSamples; ++i)
      if (b.*which >> i & 1) places.push_back(blockBegin(b.block) + i);
  return places;
}

class Loops : public testing::TestWithParam<SampleLoops> {
 protected:
  void SetUp() override {
    if (!GetParam().runs_here) GTEST_SKIP() << "this processor lacks the unit";
  }

  static void expectLook(const Sector& sector, const std::string& what) {
    const SectorLook look = GetParam().look(sector.begin());
    EXPECT_EQ(look.low, sector.low()) << what;
    EXPECT_EQ(look.high, sector.high()) << what;
    EXPECT_EQ(look.channels.left_silent, sector.silent(0)) << what;
    EXPECT_EQ(look.channels.right_silent, sector.silent(1)) << what;
    EXPECT_EQ(look.channels.same, sector.same()) << what;
    if (sector.full().empty()) {
      EXPECT_EQ(look.turn_blocks, 0u) << what;
    }
  }

  static void expectTurns(const Sector& sector, const std::string& what) {
    std::vector<BlockTurns> found(kSectorBlocks);
    const uint32_t blocks = GetParam().look(sector.begin()).turn_blocks;
    found.resize(GetParam().turns(sector.begin(), blocks, found.data()));
    EXPECT_EQ(placesOf(found, &BlockTurns::begun), sector.turns(true)) << what;
    EXPECT_EQ(placesOf(found, &BlockTurns::ended), sector.turns(false)) << what;
    size_t runs = 0;
    for (const BlockTurns& b : found) {
      runs += static_cast<size_t>(b.runs);
      EXPECT_NE(b.begun | b.ended, 0u) << what;
    }
    EXPECT_EQ(runs, sector.turns(true).size()) << what;
  }
};

TEST_P(Loops, SeeEverySampleOfASector) {
  for (size_t i = 0; i < kSectorSamples; ++i) {
    for (const int16_t level : {int16_t{-32768}, int16_t{32767}, int16_t{3}, int16_t{-3},
                                int16_t{2}, int16_t{-2}, int16_t{32766}, int16_t{-32767}}) {
      Sector sector;
      sector[i] = level;
      expectLook(sector, std::to_string(level) + " at " + std::to_string(i));
    }
  }
}

TEST_P(Loops, CompareTheChannelsOfEveryFrame) {
  for (size_t i = 0; i < kSectorSamples; i += 2) {
    for (const int apart : {-65535, -3, -2, 0, 2, 3, 65535}) {
      Sector sector;
      for (size_t k = 0; k < kSectorSamples; ++k) sector[k] = 1000;
      const int left = std::clamp(1000 + apart, -32768, 32767);
      sector[i] = static_cast<int16_t>(left);
      sector[i + 1] = static_cast<int16_t>(std::clamp(left - apart, -32768, 32767));
      expectLook(sector, std::to_string(apart) + " at " + std::to_string(i));
    }
  }
}

TEST_P(Loops, SeeNothingOfTheSectorsBesideThisOne) {
  Sector sector;
  for (size_t i = 0; i < kBefore; ++i) sector.before(i) = 32767;
  for (size_t i = 0; i < kBehind; ++i) sector.behind(i) = -32768;
  expectLook(sector, "between two");
  expectTurns(sector, "between two");
}

TEST_P(Loops, SeeWhereARunBeginsAndEndsAtEveryPlace) {
  for (size_t i = 0; i < kSectorSamples; ++i) {
    for (const size_t length : {2u, 3u, 4u, 40u}) {
      Sector sector;
      for (size_t k = i; k < i + 2 * length && k < kSectorSamples + kBehind; k += 2)
        sector[k] = i % 4 < 2 ? int16_t{32767} : int16_t{-32768};
      expectTurns(sector, std::to_string(length) + " at " + std::to_string(i));
    }
  }
}

TEST_P(Loops, SeeRunsThatCameFromTheSectorBefore) {
  for (size_t channel = 0; channel < 2; ++channel) {
    for (size_t before = 1; before <= kBefore / 2; ++before) {
      for (size_t behind = 0; behind < 4; ++behind) {
        Sector sector;
        for (size_t k = 0; k < before; ++k) sector.before(2 * k + 1 - channel) = 32767;
        for (size_t k = 0; k < behind; ++k) sector[2 * k + channel] = 32767;
        expectTurns(sector, std::to_string(before) + " and " + std::to_string(behind));
      }
    }
  }
}

TEST_P(Loops, AgreeOnSectorsOfChance) {
  std::mt19937 random(12);
  for (int round = 0; round < 500; ++round) {
    Sector sector;
    // From nearly silent to nearly all clipped, with many pairs of equal neighbours.
    const int spread = 1 << (round % 18);
    for (size_t i = 0; i < kSectorSamples; ++i) {
      const int x = static_cast<int>(random() % static_cast<unsigned>(spread)) - spread / 2;
      sector[i] = static_cast<int16_t>(std::clamp(x * 2, -32768, 32767));
      if (i >= 2 && random() % 2 == 0) sector[i] = sector[i - 2];
    }
    expectLook(sector, "round " + std::to_string(round));
    expectTurns(sector, "round " + std::to_string(round));
  }
}

INSTANTIATE_TEST_SUITE_P(Forms, Loops, testing::ValuesIn(allLoops()),
                         [](const auto& form) { return std::string(form.param.name); });

}  // namespace
}  // namespace velmor::check::test
