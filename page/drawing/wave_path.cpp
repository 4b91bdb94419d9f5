#include "page/drawing/wave_path.h"

#include <algorithm>

namespace velmor::page {

namespace {

constexpr int kFullSample = 32768;
constexpr int kMostGain = 64;

/// The swings of sectors from `begin` up to `end` as one; silence outside the outline.
Swing swingOf(const Outline& outline, int64_t begin, int64_t end) {
  Swing all;
  begin = std::max(begin, outline.begin);
  end = std::min(end, outline.end());
  for (int64_t sector = begin; sector < end; ++sector) {
    const Swing& one = outline.swings[static_cast<size_t>(sector - outline.begin)];
    all.low = std::min(all.low, one.low);
    all.high = std::max(all.high, one.high);
  }
  return all;
}

/// Units below the top for a sample.
int heightOf(int sample, int gain) {
  const int units = (sample * gain * kHalfHeight) / kFullSample;
  return kHalfHeight - std::clamp(units, -kHalfHeight, kHalfHeight);
}

/// "1 -3" or "1-3": a step of the path, as short as can be.
void addStep(std::string& path, int across, int down) {
  path += (across < 0 || path.back() == 'l' ? "" : " ") + std::to_string(across) +
          (down < 0 ? "" : " ") + std::to_string(down);
}

}  // namespace

std::string wavePath(const Outline& outline, const Stretch& stretch, const WaveShape& shape) {
  std::vector<int> top, bottom;
  for (int column = 0; column < shape.columns; ++column) {
    const int64_t begin = stretch.begin + stretch.sectors() * column / shape.columns;
    const int64_t end = stretch.begin + stretch.sectors() * (column + 1) / shape.columns;
    const Swing swing = swingOf(outline, begin, std::max(end, begin + 1));
    top.push_back(heightOf(swing.high, shape.gain));
    bottom.push_back(heightOf(swing.low, shape.gain));
  }
  if (top.empty()) return {};
  std::string path = "M0 " + std::to_string(top.front()) + "l";
  for (size_t i = 1; i < top.size(); ++i) addStep(path, 1, top[i] - top[i - 1]);
  addStep(path, 1, 0);
  addStep(path, 0, bottom.back() - top.back());
  for (size_t i = bottom.size(); i-- > 1;) addStep(path, -1, bottom[i - 1] - bottom[i]);
  addStep(path, -1, 0);
  return path + 'z';
}

int gainFor(const Outline& outline, const Stretch& stretch) {
  const Swing swing = swingOf(outline, stretch.begin, stretch.end);
  const int peak = std::max(-int{swing.low}, int{swing.high});
  int gain = 1;
  while (gain < kMostGain && peak * gain * 2 <= kFullSample) gain *= 2;
  return peak == 0 ? 1 : gain;
}

}  // namespace velmor::page
