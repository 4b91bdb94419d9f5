// The loops with AVX2. The functions that need it name their target themselves, so that the program
// still runs on processors without it.
#include <immintrin.h>

#include <array>
#include <bit>
#include <cstdlib>

#include "check/samples/sample_loops.h"

#define VELMOR_AVX2 __attribute__((target("avx2,popcnt")))

namespace velmor::check {

namespace {

constexpr size_t kLanes = 16;
static_assert(kBlockSamples == 4 * kLanes);

struct Block {
  __m256i a, b, c, d;
};

VELMOR_AVX2 inline __m256i load(const int16_t* samples) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(samples));
}

VELMOR_AVX2 inline Block loadBlock(const int16_t* samples) {
  return {load(samples), load(samples + kLanes), load(samples + 2 * kLanes),
          load(samples + 3 * kLanes)};
}

VELMOR_AVX2 inline __m256i lowest(const Block& s) {
  return _mm256_min_epi16(_mm256_min_epi16(s.a, s.b), _mm256_min_epi16(s.c, s.d));
}

VELMOR_AVX2 inline __m256i highest(const Block& s) {
  return _mm256_max_epi16(_mm256_max_epi16(s.a, s.b), _mm256_max_epi16(s.c, s.d));
}

/// How far the samples of each frame lie apart, at one of its two places; no more than zero at the
/// other. Saturated: what 16 bits do not hold stays large.
VELMOR_AVX2 inline __m256i apart(__m256i frames) {
  const __m256i swap = _mm256_broadcastsi128_si256(
      _mm_setr_epi8(2, 3, 0, 1, 6, 7, 4, 5, 10, 11, 8, 9, 14, 15, 12, 13));
  return _mm256_subs_epi16(frames, _mm256_shuffle_epi8(frames, swap));
}

VELMOR_AVX2 inline __m256i atFullScale(__m256i low, __m256i high) {
  return _mm256_or_si256(_mm256_cmpeq_epi16(low, _mm256_set1_epi16(INT16_MIN)),
                         _mm256_cmpeq_epi16(high, _mm256_set1_epi16(INT16_MAX)));
}

/// The processor finds the least of eight unsigned numbers; `flip` makes that what is looked for.
VELMOR_AVX2 inline int16_t leastWhenFlipped(__m128i eight, int16_t flip) {
  const __m128i least = _mm_minpos_epu16(_mm_xor_si128(eight, _mm_set1_epi16(flip)));
  return static_cast<int16_t>(_mm_cvtsi128_si32(least) ^ flip);
}

VELMOR_AVX2 inline int16_t lowestLane(__m256i lanes) {
  return leastWhenFlipped(
      _mm_min_epi16(_mm256_castsi256_si128(lanes), _mm256_extracti128_si256(lanes, 1)), INT16_MIN);
}

VELMOR_AVX2 inline int16_t highestLane(__m256i lanes) {
  return leastWhenFlipped(
      _mm_max_epi16(_mm256_castsi256_si128(lanes), _mm256_extracti128_si256(lanes, 1)), INT16_MAX);
}

/// Two bits for each sample that lies above the limit.
VELMOR_AVX2 inline unsigned lanesAbove(__m256i lanes, int16_t limit) {
  return static_cast<unsigned>(
      _mm256_movemask_epi8(_mm256_cmpgt_epi16(lanes, _mm256_set1_epi16(limit))));
}

/// From the extremes of each lane, of which every other one holds the left channel.
VELMOR_AVX2 inline Channels channelsOf(__m256i low, __m256i high, bool same) {
  constexpr unsigned kLeft = 0x33333333, kRight = 0xCCCCCCCC;
  const unsigned sounds = lanesAbove(high, kResidue) | ~lanesAbove(low, -kResidue - 1);
  return {!(sounds & kLeft), !(sounds & kRight), same};
}

/// Which lanes of a block's vectors, two bits each, have a sample at full scale; and room for what
/// is read beyond the last one.
using FullLanes = std::array<uint32_t, kSectorBlocks + 1>;

/// The blocks in which runs may turn. Most of a loud sector's blocks touch full scale, but few have
/// three samples of it in a row, and these lie two lanes from one another, perhaps in two blocks.
/// (The last block begins in the midst of a vector of the one before it, but shares more with it
/// than three in a row can reach over.)
VELMOR_AVX2 inline uint32_t blocksWithThree(const FullLanes& full) {
  // What lies beside the sector may go on in its first block and in its last one.
  uint32_t blocks = 0, three_before = ~uint32_t{0};
  for (size_t b = 0; b < kSectorBlocks; ++b) {
    const uint32_t here = full[b], two_blocks = here | full[b + 1];
    const uint32_t three = b + 1 < kSectorBlocks
                               ? two_blocks & std::rotl(two_blocks, 4) & std::rotl(two_blocks, 8)
                               : ~uint32_t{0};
    blocks |= static_cast<uint32_t>(here != 0 && (three_before | three) != 0) << b;
    three_before = three;
  }
  return blocks;
}

/// All in one pass: while samples come from the cache the vector unit has time. Comparing the
/// channels as well would be more than it has time for.
template <bool kCompare>
VELMOR_AVX2 inline SectorLook lookOnce(const int16_t* sector) {
  __m256i low = load(sector), high = low, furthest_apart = _mm256_setzero_si256();
  FullLanes full;
  full[kSectorBlocks] = 0;
  uint32_t any_full = 0;
  for (size_t b = 0; b < kSectorBlocks; ++b) {
    const Block block = loadBlock(sector + blockBegin(b));
    const __m256i l = lowest(block), h = highest(block);
    low = _mm256_min_epi16(low, l);
    high = _mm256_max_epi16(high, h);
    full[b] = static_cast<uint32_t>(_mm256_movemask_epi8(atFullScale(l, h)));
    any_full |= full[b];
    if constexpr (kCompare)
      furthest_apart = _mm256_max_epi16(furthest_apart, highest({apart(block.a), apart(block.b),
                                                                 apart(block.c), apart(block.d)}));
  }
  const bool same = kCompare && !lanesAbove(furthest_apart, kResidue);
  return {lowestLane(low), highestLane(high), channelsOf(low, high, same),
          any_full ? blocksWithThree(full) : 0};
}

/// Nearly every sector of stereo music tells by its first frame that its channels differ.
VELMOR_AVX2 SectorLook lookAvx2(const int16_t* sector) {
  return std::abs(sector[0] - sector[1]) > kResidue ? lookOnce<false>(sector)
                                                    : lookOnce<true>(sector);
}

struct Turns {
  __m256i begun, ended;
};

/// A run begins or ends at a sample when it and the one before are equal, and so is either the one
/// behind it or the one before them, but not both.
VELMOR_AVX2 inline Turns turnsAt(const int16_t* samples) {
  const __m256i here = load(samples), before = load(samples - 2);
  const __m256i two = _mm256_and_si256(atFullScale(here, here), _mm256_cmpeq_epi16(here, before));
  const __m256i came_on = _mm256_cmpeq_epi16(before, load(samples - 4));
  const __m256i goes_on = _mm256_cmpeq_epi16(load(samples + 2), here);
  return {_mm256_andnot_si256(came_on, _mm256_and_si256(two, goes_on)),
          _mm256_andnot_si256(goes_on, _mm256_and_si256(two, came_on))};
}

/// A bit for each of 32 samples.
VELMOR_AVX2 inline uint64_t bitsOf(__m256i first, __m256i second) {
  const __m256i packed =
      _mm256_permute4x64_epi64(_mm256_packs_epi16(first, second), _MM_SHUFFLE(3, 1, 2, 0));
  return static_cast<unsigned>(_mm256_movemask_epi8(packed));
}

VELMOR_AVX2 size_t turnsAvx2(const int16_t* sector, uint32_t turn_blocks, BlockTurns* found) {
  constexpr size_t kShared = kSectorBlocks * kBlockSamples - kSectorSamples;
  size_t count = 0;
  for (; turn_blocks != 0; turn_blocks &= turn_blocks - 1) {
    const auto b = static_cast<size_t>(std::countr_zero(turn_blocks));
    const int16_t* block = sector + blockBegin(b);
    const Turns t[] = {turnsAt(block), turnsAt(block + kLanes), turnsAt(block + 2 * kLanes),
                       turnsAt(block + 3 * kLanes)};
    const uint64_t own = b + 1 < kSectorBlocks ? ~uint64_t{0} : ~uint64_t{0} << kShared;
    const uint64_t begun =
        (bitsOf(t[0].begun, t[1].begun) | bitsOf(t[2].begun, t[3].begun) << 32) & own;
    const uint64_t ended =
        (bitsOf(t[0].ended, t[1].ended) | bitsOf(t[2].ended, t[3].ended) << 32) & own;
    found[count] = {b, begun, ended, __builtin_popcountll(begun)};
    count += static_cast<size_t>((begun | ended) != 0);
  }
  return count;
}

}  // namespace

std::span<const SampleLoops> vectorLoops() {
  static const SampleLoops kForms[] = {
      {"Avx2", __builtin_cpu_supports("avx2") && __builtin_cpu_supports("popcnt"), lookAvx2,
       turnsAvx2}};
  return kForms;
}

}  // namespace velmor::check
