#include "tests/kit/faults/live_blocks.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace test_kit {

namespace {

/// Far more than any test holds at once. The tables take no memory, since the allocator's own
/// definitions use them.
constexpr size_t kPlaces = 1 << 16;
/// Stands where a block was given back: a search goes on behind it, another block may take it.
constexpr uintptr_t kGivenBack = 1;

struct Table {
  std::array<uintptr_t, kPlaces> places{};
  size_t used = 0;  ///< places that are not free, those given back included

  static size_t firstPlaceOf(uintptr_t block) { return (block >> 4) * 0x9E3779B97F4A7C15U >> 48; }
  /// Where the block stands, or the free place at which the search for it ends.
  size_t placeOf(uintptr_t block) const {
    size_t place = firstPlaceOf(block);
    while (places[place] != 0 && places[place] != block) place = (place + 1) % kPlaces;
    return place;
  }
  void add(uintptr_t block) {
    size_t place = firstPlaceOf(block);
    while (places[place] > kGivenBack) place = (place + 1) % kPlaces;
    used += places[place] == 0 ? 1 : 0;
    places[place] = block;
  }
};

Table g_tables[2];
int g_current = 0;
std::atomic<int> g_live{0};
std::mutex g_guard;

/// Leaves out the places that were given back, so that searches stay short and come to an end.
void tidyUp() {
  const Table& old = g_tables[g_current];
  g_current = 1 - g_current;
  Table& fresh = g_tables[g_current];
  fresh.places.fill(0);
  fresh.used = 0;
  for (const uintptr_t block : old.places) {
    if (block > kGivenBack) fresh.add(block);
  }
}

}  // namespace

int liveBlocks() {
  return g_live;
}

void noteTaken(const void* block) {
  const std::lock_guard lock(g_guard);
  if (g_tables[g_current].used >= kPlaces / 2) tidyUp();
  g_tables[g_current].add(reinterpret_cast<uintptr_t>(block));
  ++g_live;
}

bool noteGivenBack(const void* block) {
  // Nothing is locked while nobody watches: a sanitizer frees before its locks can be used.
  if (block == nullptr || g_live == 0) return false;
  const std::lock_guard lock(g_guard);
  Table& table = g_tables[g_current];
  const size_t place = table.placeOf(reinterpret_cast<uintptr_t>(block));
  if (table.places[place] == 0) return false;
  table.places[place] = kGivenBack;
  --g_live;
  return true;
}

}  // namespace test_kit
