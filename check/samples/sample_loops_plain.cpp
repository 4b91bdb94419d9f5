// The loops for any processor, without branches and of constant length, so that the compiler makes
// vectors of them.
#include <bit>

#include "check/samples/sample_loops.h"

namespace velmor::check {

namespace {

struct Extremes {
  int16_t low, high;

  void take(int16_t sample) {
    low = sample < low ? sample : low;
    high = sample > high ? sample : high;
  }
};

/// Goes through three parts at once, each a whole number of vectors, so that no result has to wait
/// for the one before.
Extremes extremesOf(const int16_t* sector) {
  constexpr size_t kPart = kSectorSamples / 3;
  static_assert(kPart % 8 == 0);
  Extremes a{sector[0], sector[0]}, b = a, c = a;
  for (size_t i = 0; i < kPart; ++i) {
    a.take(sector[i]);
    b.take(sector[i + kPart]);
    c.take(sector[i + 2 * kPart]);
  }
  for (const Extremes& part : {b, c}) {
    a.take(part.low);
    a.take(part.high);
  }
  return a;
}

bool beyondResidue(int value) {
  return value < -kResidue || value > kResidue;
}

bool silent(const int16_t* channel) {
  int sounds = 0;
  for (size_t i = 0; i < kSectorSamples; i += 2)
    sounds |= static_cast<int>(beyondResidue(channel[i]));
  return !sounds;
}

bool same(const int16_t* sector) {
  int differs = 0;
  for (size_t i = 0; i < kSectorSamples; i += 2)
    differs |= static_cast<int>(beyondResidue(sector[i] - sector[i + 1]));
  return !differs;
}

/// Nearly every sector of stereo music is told by its first frame.
Channels channelsOf(const int16_t* sector) {
  const int left = sector[0], right = sector[1];
  return {!beyondResidue(left) && silent(sector), !beyondResidue(right) && silent(sector + 1),
          !beyondResidue(left - right) && same(sector)};
}

bool atFullScale(int16_t sample) {
  return (sample == INT16_MAX) | (sample == INT16_MIN);
}

bool touchesFullScale(const int16_t* block) {
  int16_t found = 0;
  for (size_t i = 0; i < kBlockSamples; ++i)
    found = static_cast<int16_t>(found | static_cast<int16_t>(atFullScale(block[i])));
  return found != 0;
}

uint32_t touchedBlocks(const int16_t* sector) {
  uint32_t touched = 0;
  for (size_t b = 0; b < kSectorBlocks; ++b)
    touched |= uint32_t{touchesFullScale(sector + blockBegin(b))} << b;
  return touched;
}

SectorLook lookPlain(const int16_t* sector) {
  const Extremes e = extremesOf(sector);
  const bool touched = e.low == INT16_MIN || e.high == INT16_MAX;
  return {e.low, e.high, channelsOf(sector), touched ? touchedBlocks(sector) : 0};
}

/// Does a run begin or end at the sample? It and the one before are equal, and so is either the one
/// behind it or the one before them, but not both.
bool isTurn(const int16_t* s) {
  return atFullScale(s[0]) & (s[0] == s[-2]) & ((s[2] == s[0]) != (s[-2] == s[-4]));
}

bool anyTurn(const int16_t* block) {
  int16_t found = 0;
  for (size_t i = 0; i < kBlockSamples; ++i)
    found = static_cast<int16_t>(found | static_cast<int16_t>(isTurn(block + i)));
  return found != 0;
}

size_t turnsPlain(const int16_t* sector, uint32_t turn_blocks, BlockTurns* found) {
  size_t count = 0, looked_to = 0;
  for (size_t b = 0; b < kSectorBlocks; ++b) {
    const size_t begin = blockBegin(b);
    if ((turn_blocks >> b & 1) && anyTurn(sector + begin)) {
      BlockTurns turns{b};
      for (size_t i = looked_to - begin; i < kBlockSamples; ++i) {
        const int16_t* s = sector + begin + i;
        if (isTurn(s)) (s[2] == s[0] ? turns.begun : turns.ended) |= uint64_t{1} << i;
      }
      turns.runs = std::popcount(turns.begun);
      if (turns.begun | turns.ended) found[count++] = turns;
    }
    looked_to = begin + kBlockSamples;
  }
  return count;
}

}  // namespace

const SampleLoops kPlainLoops{"Plain", true, lookPlain, turnsPlain};

}  // namespace velmor::check
