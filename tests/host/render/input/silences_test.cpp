// Silence between stretches of an input's audio, sample by sample.
#include "host/render/input/silences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/host/render/input/sound_files.h"
#include "tests/kit/wav.h"

namespace velmor::render::test {
namespace {

using testing::Each;

class SilencesTest : public testing::Test {
 protected:
  static constexpr size_t kFrames = 5000;

  void SetUp() override {
    std::string bytes;
    for (uint32_t i = 0; i < kFrames; ++i) {
      bytes += test_kit::little16(i + 1) + test_kit::little16(i + 2);
    }
    m_path = m_folder.write("a.wav", test_kit::wavFile(bytes));
  }
  std::unique_ptr<AudioInput> open(std::vector<Silence> silences) const {
    return withSilences(AudioInput::open(m_path, Dither::kTpdf), std::move(silences));
  }
  /// The left channel that is due.
  static std::vector<double> expected(const std::vector<Silence>& silences) {
    std::vector<double> all;
    for (size_t i = 0; i <= kFrames; ++i) {
      for (const Silence& silence : silences) {
        const auto at = std::min<int64_t>(silence.at, kFrames);
        if (at == static_cast<int64_t>(i))
          all.insert(all.end(), static_cast<size_t>(silence.frames), 0.0);
      }
      if (i < kFrames) all.push_back(static_cast<double>(i + 1) / 32768.0);
    }
    return all;
  }

  Folder m_folder;
  std::string m_path;
};

/// The left channel, a stretch at a time. What is not packed as in the file is silence.
std::vector<double> leftOfStretches(AudioInput& input) {
  std::vector<double> read;
  for (AudioStretch stretch; input.readStretch(stretch, 600), stretch.frames() > 0;) {
    std::vector<double> left(stretch.frames()), right(stretch.frames());
    stretch.copy(0, stretch.frames(), left.data(), right.data());
    if (!stretch.isPacked()) {
      EXPECT_THAT(left, Each(0.0));
      EXPECT_THAT(right, Each(0.0));
    }
    read.insert(read.end(), left.begin(), left.end());
  }
  return read;
}

const std::vector<Silence> kSilences[] = {
    {{0, 588}},
    {{100, 7}, {100, 5}, {4999, 1}},
    {{5000, 3}, {kAtTheEnd, 1000}},
    {{0, 1}, {1, 1}, {2, 3000}, {9999999, 2}},
};

TEST_F(SilencesTest, LieWhereTheyBelong) {
  for (const std::vector<Silence>& silences : kSilences) {
    const std::vector<double> due = expected(silences);
    EXPECT_EQ(open(silences)->info().frames, static_cast<int64_t>(due.size()));
    for (const size_t block : {1U, 7U, 588U, 100000U}) {
      const Stereo read = readAll(*open(silences), block);
      EXPECT_TRUE(read.left == due) << block;
      EXPECT_EQ(read.right.size(), due.size());
    }
  }
}

TEST_F(SilencesTest, ComeAsStretchesOfTheirOwnAndLeaveTheOthersPacked) {
  for (const std::vector<Silence>& silences : kSilences) {
    EXPECT_TRUE(leftOfStretches(*open(silences)) == expected(silences));
  }
}

TEST_F(SilencesTest, AndSoundAreCutOut) {
  const std::vector<Silence> silences{{100, 50}, {kAtTheEnd, 30}};
  const std::vector<Silence> cuts{{0, 10}, {90, 70}, {5070, 10}};
  std::vector<double> due = expected(silences);
  for (auto cut = cuts.rbegin(); cut != cuts.rend(); ++cut)
    due.erase(due.begin() + cut->at, due.begin() + cut->at + cut->frames);
  for (const size_t block : {1U, 9U, 100000U}) {
    const auto input = withoutCuts(open(silences), cuts);
    EXPECT_EQ(input->info().frames, static_cast<int64_t>(due.size()));
    EXPECT_TRUE(readAll(*input, block).left == due) << block;
  }
  EXPECT_TRUE(leftOfStretches(*withoutCuts(open(silences), cuts)) == due);
}

TEST_F(SilencesTest, OfNoneLeaveTheInputAsItIs) {
  const auto input = open({});
  EXPECT_EQ(input->info().frames, static_cast<int64_t>(kFrames));
  EXPECT_TRUE(readAll(*input, 1000).left == expected({}));
}

}  // namespace
}  // namespace velmor::render::test
