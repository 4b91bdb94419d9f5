#include "host/render/module/clipping.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cmath>
#include <cstddef>

namespace velmor::render {

namespace {

bool isOver(double x) {
  return !(std::fabs(x) <= 1.0);
}

/// Whether any sample may reach full scale, by its exponent alone. A double has 11 bits of
/// exponent, 1023 for 1.0; one more makes 1024 or above for 1.0, for everything larger, and for
/// infinities and NaNs, which sets one of the two highest bits.
bool mayBeOver(std::span<const double> samples) {
  constexpr uint64_t kMagnitude = ~(uint64_t{1} << 63);
  constexpr uint64_t kExponentStep = uint64_t{1} << 52;
  uint64_t reached = 0;
  for (const double x : samples) {
    reached |= (std::bit_cast<uint64_t>(x) & kMagnitude) + kExponentStep;
  }
  return reached >> 62 != 0;
}

double magnitudeOf(double x) {
  return std::isnan(x) ? HUGE_VAL : std::fabs(x);
}

int64_t countOver(std::span<const double> samples) {
  if (!mayBeOver(samples)) return 0;
  int64_t over = 0;
  for (const double x : samples) over += isOver(x);
  return over;
}

}  // namespace

void Clipping::look(std::span<const double> left, std::span<const double> right, int64_t start) {
  assert(left.size() == right.size());
  const int64_t over = countOver(left) + countOver(right);
  if (over == 0) return;
  samples += over;
  for (size_t i = 0; i < left.size(); ++i) {
    if (!isOver(left[i]) && !isOver(right[i])) continue;
    const int64_t frame = start + static_cast<int64_t>(i);
    if (first_frame < 0) first_frame = frame;
    const double magnitude = std::max(magnitudeOf(left[i]), magnitudeOf(right[i]));
    if (magnitude <= peak) continue;
    peak = magnitude;
    worst_frame = frame;
  }
}

}  // namespace velmor::render
