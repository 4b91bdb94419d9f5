// A page of the longest disc with the most tracks and the wildest sound.

#include <gtest/gtest.h>

#include <random>

#include "disc/units/disc_limits.h"
#include "page/drawing/disc_drawing.h"
#include "page/html/document.h"

namespace velmor::page::test {
namespace {

constexpr size_t kMegabyte = size_t{1} << 20;

/// Eighty minutes of noise in 99 tracks, each with a finding.
class LongestDisc : public testing::Test {
 protected:
  LongestDisc() {
    std::mt19937 draw(1);
    std::uniform_int_distribution<int> sample(0, 32767);
    for (int64_t s = 0; s < disc::kLongestDiscSectors; ++s)
      m_measured.outline.swings.push_back(
          {static_cast<int16_t>(-sample(draw)), static_cast<int16_t>(sample(draw))});
    m_disc.end = disc::kLongestDiscSectors;
    m_disc.end_known = true;
    m_disc.runs.push_back({0, 0, 0, m_disc.end});
    for (int t = 0; t < disc::kMostTracks; ++t) addTrack(t);
    m_measured.whole = Loudness{-9.0, 1.0};
  }

  void addTrack(int t) {
    PageTrack track;
    track.number = t + 1;
    track.title = std::string(80, 'x');
    const int64_t length = m_disc.end / disc::kMostTracks;
    track.place = Stretch{t * length, (t + 1) * length};
    track.indices = {{1, track.place->begin}};
    m_disc.tracks.push_back(track);
    TrackOutline outline;
    outline.frames = length * 588;
    outline.peak = 32767;
    m_measured.outline.tracks.emplace_back(outline);
    m_measured.loudness.emplace_back(Loudness{-9.0, 1.0});
    m_measured.clipped.emplace_back();
    m_places.emplace_back(track.place->begin);
    check::Finding finding;
    finding.rule = "clipped";
    finding.track = t + 1;
    finding.what = std::string(100, 'x');
    m_disc.findings.push_back(finding);
  }

  PageDisc m_disc;
  MeasuredDisc m_measured;
  std::vector<std::optional<int64_t>> m_places;
  std::vector<check::Reader> m_readers;
  PageView m_view{m_disc, m_measured, m_places, m_readers};
};

TEST_F(LongestDisc, IsDrawnInFarLessThanAMegabyte) {
  const std::string drawn = discDrawing(m_view);
  EXPECT_GT(drawn.size(), 5000U);
  EXPECT_LT(drawn.size(), kMegabyte / 10);
}

TEST_F(LongestDisc, HasAPageOfLessThanAMegabyte) {
  EXPECT_LT(documentText(m_view).size(), kMegabyte);
}

}  // namespace
}  // namespace velmor::page::test
