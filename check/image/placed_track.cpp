#include "check/image/placed_track.h"

#include <algorithm>
#include <optional>

#include "disc/units/disc_limits.h"
#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

/// The FILE that is on the disc before `file`, when its samples can be read.
std::optional<size_t> fileBefore(const Disc& disc, size_t file) {
  const std::vector<bool> used = filesInUse(disc.sheet);
  while (file-- > 0)
    if (used[file]) return disc.images[file].readable() ? std::optional(file) : std::nullopt;
  return std::nullopt;
}

bool lasts(const std::optional<disc::Msf>& gap) {
  return gap && gap->readable() && gap->sectors() > 0;
}

/// Does the sheet add silence between the track and what lies before it?
bool silenceIsAddedBefore(const Disc& disc, const PlacedTrack& track) {
  const auto t = static_cast<size_t>(track.number - 1);
  return lasts(disc.sheet.tracks[t].pregap) || (t > 0 && lasts(disc.sheet.tracks[t - 1].postgap));
}

/// Puts the last frames before frame `end` of the image at the end of `samples`.
void readUpTo(const ImageFile& image, int64_t end, std::vector<int16_t>& samples) {
  const auto room = static_cast<int64_t>(samples.size() / 2);
  const int64_t count = std::min(room, end);
  image.readFrames(end - count, samples.data() + 2 * (room - count), static_cast<size_t>(count));
}

}  // namespace

std::vector<PlacedTrack> placedTracks(const Disc& disc) {
  std::vector<PlacedTrack> placed;
  // Beyond 99 tracks there is no disc; a hostile sheet could have each of them read the image anew.
  const size_t tracks = std::min<size_t>(disc.places.size(), disc::kMostTracks);
  for (size_t t = 0; t < tracks; ++t) {
    const disc::Track& track = disc.sheet.tracks[t];
    if (!disc.places[t] || !track.isAudio()) continue;
    const TrackPlace& p = *disc.places[t];
    if (p.file >= disc.audio.size() || !disc.audio[p.file]) continue;
    placed.push_back({&p, &*disc.audio[p.file], &disc.images[p.file], track.index(1)->line,
                      static_cast<int>(t) + 1, track.index(0) != nullptr});
  }
  return placed;
}

Stretch pauseBefore(const Disc& disc, const PlacedTrack& track) {
  const disc::Index* gap = disc.sheet.tracks[static_cast<size_t>(track.number - 1)].index(0);
  const size_t file = track.place->file;
  if (!gap || !gap->time.readable()) return {};
  if (gap->file == file) return {file, track.place->gap_start, track.place->start};
  const std::optional<size_t> before = fileBefore(disc, file);
  if (track.place->start != 0 || before != gap->file) return {};
  const int64_t end = disc.images[*before].sectors();
  return {*before, std::min(gap->time.sectors(), end), end};
}

std::vector<int16_t> framesBefore(const Disc& disc, const PlacedTrack& track, size_t frames) {
  std::vector<int16_t> samples(2 * frames);
  if (silenceIsAddedBefore(disc, track)) return samples;
  if (track.place->start > 0) {
    readUpTo(*track.image, track.place->start * disc::kFramesPerSector, samples);
  } else if (const auto file = fileBefore(disc, track.place->file)) {
    const ImageFile& image = disc.images[*file];
    // What is missing of its last sector is silence, and stays at the end.
    const int64_t there = image.dataBytes() / disc::kBytesPerFrame;
    const auto missing = static_cast<size_t>(image.sectors() * disc::kFramesPerSector - there);
    if (missing >= frames) return samples;
    samples.resize(2 * (frames - missing));
    readUpTo(image, there, samples);
    samples.resize(2 * frames);
  }
  return samples;
}

std::vector<int16_t> framesFrom(const PlacedTrack& track, size_t frames) {
  std::vector<int16_t> samples(2 * frames);
  track.image->readFrames(track.place->start * disc::kFramesPerSector, samples.data(), frames);
  return samples;
}

}  // namespace velmor::check
