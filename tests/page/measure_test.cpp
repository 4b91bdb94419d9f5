// Measured discs, of samples that were laid out by hand.

#include <ebur128.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "check/check.h"
#include "disc/units/disc_units.h"
#include "page/album/disc_of_sheet.h"
#include "page/drawing/finding_places.h"
#include "page/drawing/wave_path.h"
#include "page/measure/measured_disc.h"
#include "tests/check/test_images.h"

namespace velmor::page::test {
namespace {

using check::test::TestImage;
using test_kit::writeFile;

constexpr int64_t kSector = disc::kFramesPerSector;
const auto kUntold = [](int64_t, int64_t) {};

class Measured : public testing::Test {
 protected:
  /// Two tracks of 600 sectors.
  MeasuredDisc measured(const TestImage& image) {
    image.write(m_folder / "a.bin");
    writeFile(m_folder / "a.cue",
              "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
              "TRACK 02 AUDIO\nINDEX 01 00:08:00\n");
    m_disc = discOfSheet(check::check(m_folder / "a.cue", {}));
    return measure(m_disc, kUntold);
  }
  /// The place of the finding of a rule.
  std::optional<int64_t> placeOf(std::string_view rule, const MeasuredDisc& disc) const {
    const auto places = findingPlaces(m_disc, disc);
    for (size_t f = 0; f < places.size(); ++f)
      if (m_disc.findings[f].rule == rule) return places[f];
    return std::nullopt;
  }

  test_kit::ScratchFolder m_folder;
  PageDisc m_disc;
};

TEST_F(Measured, SilenceIsCountedToTheSample) {
  const MeasuredDisc disc = measured(TestImage(1200)
                                         .silence(0, 1234)
                                         .silence(599 * kSector + 7, 700 * kSector + 5)
                                         .silence(900 * kSector + 1, 1200 * kSector));
  EXPECT_EQ(disc.outline.tracks[0]->silent_at_start, 1234);
  EXPECT_EQ(disc.outline.tracks[0]->silent_at_end, kSector - 7);
  EXPECT_EQ(disc.outline.tracks[1]->silent_at_start, 100 * kSector + 5);
  EXPECT_EQ(disc.outline.tracks[1]->silent_at_end, 300 * kSector - 1);
  EXPECT_EQ(placeOf("silence-at-end", disc), 901);
  EXPECT_EQ(placeOf("silence-at-start", disc), 600);
}

TEST_F(Measured, ASilentTrackIsSilentWholeAndHasNoLoudness) {
  const MeasuredDisc disc = measured(TestImage(1200).silence(600 * kSector, 1200 * kSector));
  EXPECT_TRUE(disc.outline.tracks[1]->silent());
  EXPECT_EQ(disc.outline.tracks[1]->silent_at_start, 600 * kSector);
  EXPECT_EQ(disc.outline.tracks[1]->silent_at_end, 600 * kSector);
  EXPECT_TRUE(std::isinf(disc.loudness[1]->lufs));
  EXPECT_FALSE(std::isinf(disc.whole->lufs));
}

TEST_F(Measured, OffsetsAndPeaksBelongToTheirTrack) {
  const TestImage image = TestImage(1200)
                              .silence(0, 1200 * kSector)
                              .level(0, 300 * kSector, 8192)
                              .level(700 * kSector, 3, -20000);
  const MeasuredDisc disc = measured(image);
  EXPECT_DOUBLE_EQ(disc.outline.tracks[0]->offset_left, 0.125);
  EXPECT_DOUBLE_EQ(disc.outline.tracks[0]->offset_right, 0.0);
  EXPECT_EQ(disc.outline.tracks[0]->peak, 8192);
  EXPECT_EQ(disc.outline.tracks[1]->peak, 20000);
}

/// The library's own numbers of samples that it is given all at once.
Loudness measuredAtOnce(const std::string& bytes) {
  const auto destroy = [](ebur128_state* state) { ebur128_destroy(&state); };
  const std::unique_ptr<ebur128_state, decltype(destroy)> state(
      ebur128_init(2, 44100, EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK), destroy);
  ebur128_add_frames_short(state.get(), reinterpret_cast<const int16_t*>(bytes.data()),
                           bytes.size() / 4);
  Loudness loudness;
  double left = 0.0, right = 0.0;
  ebur128_loudness_global(state.get(), &loudness.lufs);
  ebur128_true_peak(state.get(), 0, &left);
  ebur128_true_peak(state.get(), 1, &right);
  loudness.true_peak = std::max(left, right);
  return loudness;
}

TEST_F(Measured, ATruePeakBetweenTwoPiecesIsThatOfTheWhole) {
  writeFile(m_folder / "a.cue", "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n");
  const auto untold = [](int64_t) {};
  for (int64_t from = -12; from <= 12; ++from) {
    TestImage image(40);
    image.level(20 * kSector + from, 4, 32767);
    image.write(m_folder / "a.bin");
    m_disc = discOfSheet(check::check(m_folder / "a.cue", {}));
    const Stretch place = *m_disc.tracks[0].place;
    const Stretch first{place.begin, place.begin + 20}, second{place.begin + 20, place.end};
    const double peak = std::max(measureTruePeak(m_disc, 0, first, untold),
                                 measureTruePeak(m_disc, 0, second, untold));
    EXPECT_EQ(peak, measuredAtOnce(image.bytes()).true_peak) << from;
  }
}

TEST_F(Measured, ALongTrackHasTheNumbersOfTheWhole) {
  // What is measured in pieces is: of two minutes and more, with its peak behind the first.
  TestImage image(75 * 125);
  image.level(75 * 123 * kSector, 5, 32767);
  image.write(m_folder / "a.bin");
  writeFile(m_folder / "a.cue", "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n");
  m_disc = discOfSheet(check::check(m_folder / "a.cue", {}));
  const MeasuredDisc disc = measure(m_disc, kUntold);
  const Loudness expected = measuredAtOnce(image.bytes());
  EXPECT_EQ(disc.loudness[0]->lufs, expected.lufs);
  EXPECT_EQ(disc.loudness[0]->true_peak, expected.true_peak);
  EXPECT_EQ(disc.whole->lufs, expected.lufs);
  EXPECT_EQ(disc.whole->true_peak, expected.true_peak);
}

TEST_F(Measured, ClippedRunsAreCountedInTheTrackInWhichTheyBegin) {
  const MeasuredDisc disc =
      measured(TestImage(1200).level(10 * kSector, 3, 32767).level(600 * kSector - 2, 9, -32768));
  EXPECT_EQ(disc.clipped[0].runs, 2);
  EXPECT_EQ(disc.clipped[0].longest, 9);
  EXPECT_EQ(disc.clipped[0].first, 10);
  EXPECT_EQ(disc.clipped[1].runs, 0);
  EXPECT_EQ(placeOf("clipped", disc), 10);
}

TEST_F(Measured, AnImageThatHasShrunkIsToldToBreakOff) {
  const MeasuredDisc whole = measured(TestImage(1200));
  EXPECT_FALSE(whole.outline.broke_off);
  EXPECT_TRUE(whole.digests[0]);
  // The page opens images anew, and somebody may have cut one meanwhile.
  m_disc.runs[0].sectors = 1200;
  std::filesystem::remove(m_folder / "a.bin");
  const MeasuredDisc gone = measure(m_disc, kUntold);
  EXPECT_TRUE(gone.outline.broke_off);
  EXPECT_FALSE(gone.digests[0]);
}

TEST_F(Measured, WhatStopsTheProgressStopsTheWork) {
  measured(TestImage(1200));
  struct Enough {};
  TestImage(75 * 120).write(m_folder / "a.bin");
  m_disc = discOfSheet(check::check(m_folder / "a.cue", {}));
  EXPECT_THROW(measure(m_disc, [](int64_t, int64_t) { throw Enough{}; }), Enough);
}

TEST(WavePath, GoesAlongTheTopAndBackAlongTheBottom) {
  Outline outline;
  outline.swings = {{-16384, 16384}, {0, 32767}, {-32768, 0}};
  EXPECT_EQ(wavePath(outline, {0, 3}, {3, 1}), "M0 50l1-49 1 99 1 0 0 100-1-100-1 50-1 0z");
}

TEST(WavePath, IsCutAtFullScaleWhenItIsEnlarged) {
  Outline outline;
  outline.swings = {{-8192, 8192}};
  EXPECT_EQ(wavePath(outline, {0, 1}, {1, 8}), "M0 0l1 0 0 200-1 0z");
}

TEST(WavePath, EnlargesAsFarAsNothingIsCut) {
  Outline outline;
  outline.swings = {{-100, 1000}, {-8193, 0}, {0, 0}, {-8192, 3}};
  EXPECT_EQ(gainFor(outline, {0, 1}), 32);
  EXPECT_EQ(gainFor(outline, {0, 2}), 2);
  EXPECT_EQ(gainFor(outline, {3, 4}), 4);
  EXPECT_EQ(gainFor(outline, {2, 3}), 1);
}

}  // namespace
}  // namespace velmor::page::test
