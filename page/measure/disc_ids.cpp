#include "page/measure/disc_ids.h"

#include <discid/discid.h>

#include <array>
#include <memory>
#include <new>

namespace velmor::page {

namespace {

/// As the library takes them: the lead-out first, then the tracks by their numbers, all counted
/// from the begin of the pause before track 1. Nothing where no disc has such times.
std::optional<std::array<int, 100>> offsetsOf(const PageDisc& disc) {
  if (!disc.end_known || disc.tracks.empty() || disc.tracks_left_out > 0) return std::nullopt;
  std::array<int, 100> offsets{};
  int64_t before = kFirstSector - 1;
  for (const PageTrack& track : disc.tracks) {
    const bool in_order = track.place && track.place->begin > before && track.number >= 1 &&
                          track.number == disc.tracks.front().number + (&track - &disc.tracks[0]);
    if (!track.is_audio || !in_order || track.number > disc::kMostTracks) return std::nullopt;
    before = track.place->begin;
    offsets[static_cast<size_t>(track.number)] = static_cast<int>(before - kFirstSector);
  }
  if (disc.end <= before || disc.end > disc::kLongestTimeSectors) return std::nullopt;
  offsets[0] = static_cast<int>(disc.end - kFirstSector);
  return offsets;
}

}  // namespace

std::optional<DiscIds> discIds(const PageDisc& disc) {
  auto offsets = offsetsOf(disc);
  if (!offsets) return std::nullopt;
  const std::unique_ptr<DiscId, decltype(&discid_free)> made(discid_new(), &discid_free);
  if (!made) throw std::bad_alloc();
  if (!discid_put(made.get(), disc.tracks.front().number, disc.tracks.back().number,
                  offsets->data()))
    return std::nullopt;
  return DiscIds{discid_get_id(made.get()), discid_get_freedb_id(made.get())};
}

}  // namespace velmor::page
