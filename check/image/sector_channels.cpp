#include "check/image/sector_channels.h"

#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

/// Frames looked at in one go: a whole number of vectors.
constexpr int kBlockFrames = 28;
static_assert(disc::kFramesPerSector % kBlockFrames == 0);

bool beyondResidue(int value) {
  return value < -kResidue || value > kResidue;
}

struct Sounds {
  bool left = false, right = false, difference = false;

  bool all() const { return left && right && difference; }

  void hear(const int16_t* block, int frames) {
    int in_left = 0, in_right = 0, in_difference = 0;
    for (int i = 0; i < frames; ++i) {
      const int l = block[2 * i], r = block[2 * i + 1];
      in_left |= static_cast<int>(beyondResidue(l));
      in_right |= static_cast<int>(beyondResidue(r));
      in_difference |= static_cast<int>(beyondResidue(l - r));
    }
    left |= in_left != 0;
    right |= in_right != 0;
    difference |= in_difference != 0;
  }
};

}  // namespace

Channels channelsOf(const int16_t* samples) {
  Sounds sounds;
  sounds.hear(samples, 1);
  for (int f = 0; f < disc::kFramesPerSector && !sounds.all(); f += kBlockFrames)
    sounds.hear(samples + 2 * f, kBlockFrames);
  return {!sounds.left, !sounds.right, !sounds.difference};
}

}  // namespace velmor::check
