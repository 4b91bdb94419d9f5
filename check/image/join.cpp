#include "check/image/join.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>

namespace velmor::check {

namespace {

/// Samples that a sample is foretold from, and the samples at the point that are compared.
constexpr size_t kOrder = 32;
constexpr size_t kCompared = 8;

/// In times of the usual error. Of continuous music the largest seen was 3.6, of the joins of two
/// songs at random places one in a hundred lay below 9.
constexpr double kSurprising = 7.0;
/// Frames of the level before the point and behind it.
constexpr size_t kEnd = 256;
constexpr size_t kBegin = 16;
/// Nobody hears less: 50 dB below full scale.
constexpr double kAudible = 100.0;
/// 18 dB.
constexpr double kMuchLouder = 8.0;

/// One channel of one side, the sample at the point last.
using Side = std::vector<double>;

double levelOf(const double* samples, size_t count) {
  double sum = 0.0;
  for (size_t i = 0; i < count; ++i) sum += samples[i] * samples[i];
  return std::sqrt(sum / static_cast<double>(count));
}

double levelAtPoint(const Side& side, size_t count) {
  return levelOf(side.data() + side.size() - count, count);
}

/// Foretells each sample from those before it (Burg's method).
class Foretelling {
 public:
  explicit Foretelling(const Side& side) {
    Side forward = side, backward = side;
    double energy = std::pow(levelOf(side.data(), side.size()), 2);
    for (size_t m = 0; m < kOrder; ++m) {
      double both = 0.0, square = 1e-9;
      for (size_t n = m + 1; n < side.size(); ++n) {
        both += forward[n] * backward[n - 1];
        square += forward[n] * forward[n] + backward[n - 1] * backward[n - 1];
      }
      const double reflection = 2.0 * both / square;
      for (size_t n = side.size() - 1; n > m; --n) {
        const double f = forward[n], b = backward[n - 1];
        forward[n] = f - reflection * b;
        backward[n] = b - reflection * f;
      }
      addStage(m, reflection);
      energy *= 1.0 - reflection * reflection;
    }
    // Half a step of a 16-bit sample is wrong in any case.
    m_usual_error = std::sqrt(std::max(energy, 0.0) + 1.0);
  }

  /// How wrong the foretelling is of the `kCompared` samples that follow `side`, in times of how
  /// wrong it is within it.
  double surprise(const Side& side, const Side& other) const {
    Side joined(side.end() - kOrder, side.end());
    for (size_t i = 0; i < kCompared; ++i) joined.push_back(other[other.size() - 1 - i]);
    double sum = 0.0;
    for (size_t i = kOrder; i < joined.size(); ++i) {
      double foretold = 0.0;
      for (size_t k = 0; k < kOrder; ++k) foretold += m_weights[k] * joined[i - 1 - k];
      sum += (joined[i] - foretold) * (joined[i] - foretold);
    }
    return std::sqrt(sum / kCompared) / m_usual_error;
  }

 private:
  void addStage(size_t m, double reflection) {
    std::array<double, kOrder> next = m_weights;
    for (size_t k = 0; k < m; ++k) next[k] -= reflection * m_weights[m - 1 - k];
    next[m] = reflection;
    m_weights = next;
  }

  std::array<double, kOrder> m_weights{};
  double m_usual_error = 1.0;
};

/// Does the sound stand away from zero with its first sample, and stay on that side? A sound that
/// begins here sets out from zero; a single sample far away is a click that a lossy coder leaves.
bool beginsAwayFromZero(const Side& after) {
  const double first = after[after.size() - 1], second = after[after.size() - 2];
  return std::abs(first) > levelOf(after.data(), after.size()) / 4 &&
         second * first > first * first / 2;
}

/// Is the sound as loud in its first few samples as over a long time? No sound that sets in is.
bool beginsAtItsLevel(const Side& after) {
  const double level = levelOf(after.data(), after.size());
  for (const size_t count : {16u, 64u, 256u, 1024u}) {
    const double part = levelAtPoint(after, count) / level;
    if (part < 0.7 || part > 1.4) return false;
  }
  return true;
}

/// Every other sample from `channel` on; backwards when what follows the point is wanted.
Side sideOf(const std::vector<int16_t>& frames, size_t channel, bool backwards) {
  Side side;
  side.reserve(kJoinFrames);
  for (size_t f = 0; f < kJoinFrames; ++f) side.push_back(frames[2 * f + channel]);
  if (backwards) std::reverse(side.begin(), side.end());
  return side;
}

/// Neither side tells what the other one is. A sound that sets in here surprises what lies before
/// it, but leads back to it.
bool breaksOff(const Side& before, const Side& after) {
  return Foretelling(before).surprise(before, after) > kSurprising &&
         Foretelling(after).surprise(after, before) > kSurprising;
}

}  // namespace

Join joinBetween(const std::vector<int16_t>& before, const std::vector<int16_t>& after) {
  assert(before.size() == 2 * kJoinFrames && after.size() == 2 * kJoinFrames);
  const std::array<Side, 2> ends = {sideOf(before, 0, false), sideOf(before, 1, false)};
  const std::array<Side, 2> begins = {sideOf(after, 0, true), sideOf(after, 1, true)};
  double end = 0.0, begin = 0.0;
  for (size_t c = 0; c < 2; ++c) {
    end = std::max(end, levelAtPoint(ends[c], kEnd));
    begin = std::max(begin, levelAtPoint(begins[c], kBegin));
  }
  if (begin < kAudible) return Join::kRunsOn;
  if (end < begin / kMuchLouder) {
    const bool cut = std::all_of(begins.begin(), begins.end(), beginsAwayFromZero) ||
                     std::all_of(begins.begin(), begins.end(), beginsAtItsLevel);
    return cut ? Join::kFromSilence : Join::kRunsOn;
  }
  for (size_t c = 0; c < 2; ++c)
    if (breaksOff(ends[c], begins[c])) return Join::kBetweenSounds;
  return Join::kRunsOn;
}

}  // namespace velmor::check
