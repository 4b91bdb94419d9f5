#include "check/image/opened_disc.h"

#include <algorithm>

#include "disc/sheet/sheet.h"
#include "disc/units/disc_time.h"

namespace velmor::check {

namespace {

/// Sectors of silence that the sheet adds around the tracks before number `track` and before it.
int64_t addedBefore(const disc::Sheet& sheet, size_t track) {
  int64_t added = 0;
  for (size_t t = 0; t <= track && t < sheet.tracks.size(); ++t) {
    if (sheet.tracks[t].pregap) added += boundedSectors(*sheet.tracks[t].pregap);
    if (t < track && sheet.tracks[t].postgap) added += boundedSectors(*sheet.tracks[t].postgap);
  }
  return added;
}

std::vector<int64_t> fileStarts(const Disc& disc) {
  const std::vector<bool> used = filesInUse(disc.sheet);
  std::vector<int64_t> starts;
  int64_t at = 0;
  for (size_t f = 0; f < disc.images.size(); ++f) {
    starts.push_back(at);
    if (used[f]) at += disc.images[f].sectors();
  }
  starts.push_back(at);
  return starts;
}

std::optional<TrackPlace> placeOf(const disc::Track& track) {
  const disc::Index* first = track.index(1);
  if (!first || !first->time.readable()) return std::nullopt;
  TrackPlace place;
  place.file = first->file;
  place.start = boundedSectors(first->time);
  place.gap_start = place.start;
  const disc::Index* gap = track.index(0);
  if (gap && gap->time.readable() && gap->file == first->file)
    place.gap_start = std::min(boundedSectors(gap->time), place.start);
  return place;
}

/// Where the pause (INDEX 00) of `next` begins, when that is behind `here` in the same file.
int64_t pauseStart(const disc::Track& next, const TrackPlace& here) {
  const disc::Index* gap = next.index(0);
  if (!gap || !gap->time.readable() || gap->file != here.file) return here.end;
  const int64_t start = boundedSectors(gap->time);
  return start > here.start ? std::min(start, here.end) : here.end;
}

void setEnds(Disc& disc) {
  for (size_t t = 0; t < disc.places.size(); ++t) {
    if (!disc.places[t]) continue;
    TrackPlace& here = *disc.places[t];
    const TrackPlace* next = nullptr;
    for (size_t n = t + 1; n < disc.places.size() && !next; ++n)
      if (disc.places[n]) next = &*disc.places[n];
    here.end_known = true;
    if (next && next->file == here.file) {
      here.end = next->start;
    } else if (here.file < disc.images.size() && disc.images[here.file].readable()) {
      here.end = disc.images[here.file].sectors();
    } else {
      here.end_known = false;
      here.end = here.start;
    }
    here.own_end =
        t + 1 < disc.places.size() ? pauseStart(disc.sheet.tracks[t + 1], here) : here.end;
  }
}

}  // namespace

int64_t boundedSectors(const disc::Msf& time) {
  constexpr int64_t kFarAway = 1'000'000;
  return time.readable() ? std::min(time.sectors(), kFarAway) : 0;
}

Disc openDisc(disc::Sheet sheet, const std::filesystem::path& name) {
  Disc disc;
  disc.name = name;
  disc.sheet = std::move(sheet);
  const disc::Sheet& s = disc.sheet;
  // A sheet may name hundreds of thousands of files, a process may open but few.
  constexpr size_t kMostFiles = 200;
  const size_t files = std::min(s.files.size(), kMostFiles);
  for (size_t f = 0; f < files; ++f)
    disc.images.emplace_back(name.parent_path() / s.files[f].name.bytes, s.files[f].type);
  for (const disc::Track& track : s.tracks) disc.places.push_back(placeOf(track));
  setEnds(disc);
  const std::vector<int64_t> starts = fileStarts(disc);
  int64_t added = 0;
  for (size_t t = 0; t < disc.places.size() && t < 1000; ++t) {
    added = addedBefore(s, t);
    if (disc.places[t] && disc.places[t]->file < disc.images.size())
      disc.places[t]->on_disc = starts[disc.places[t]->file] + disc.places[t]->start + added;
  }
  disc.length = starts.back() + added;
  disc.length_known = !disc.images.empty() && files == s.files.size() &&
                      std::all_of(disc.images.begin(), disc.images.end(),
                                  [](const ImageFile& i) { return i.readable(); });
  disc.audio.resize(disc.images.size());
  return disc;
}

std::vector<bool> filesInUse(const disc::Sheet& sheet) {
  std::vector<bool> used(sheet.files.size());
  for (const disc::Track& track : sheet.tracks)
    for (const disc::Index& index : track.indices)
      if (index.file < used.size()) used[index.file] = true;
  return used;
}

bool timesLookTruncated(const disc::Sheet& sheet) {
  if (sheet.files.size() != 1 || sheet.files[0].type != "BINARY") return false;
  if (sheet.ends.lf > 0 || sheet.ends.cr > 0 || (sheet.catalog && !sheet.catalog->quoted))
    return false;
  for (const disc::Track& track : sheet.tracks) {
    if (!track.isAudio() || (track.isrc && !track.isrc->quoted)) return false;
    for (const disc::Index& index : track.indices)
      if (index.number > 1 || !index.time.inRange() || index.time.frames % 3 == 2) return false;
  }
  return !sheet.tracks.empty();
}

}  // namespace velmor::check
