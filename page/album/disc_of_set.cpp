#include "page/album/disc_of_set.h"

#include <algorithm>

#include "check/image/audio_map.h"
#include "disc/ddp/sheet_flags.h"
#include "disc/text/latin1.h"
#include "page/album/clipped_runs.h"
#include "page/album/shown_text.h"

namespace velmor::page {

namespace {

using Progress = std::function<void(int64_t done, int64_t all)>;

/// The folder's own name, also of a path that ends in a slash or a dot.
std::string nameOf(const std::filesystem::path& folder) {
  std::error_code error;
  const auto whole = std::filesystem::weakly_canonical(folder, error);
  return shownText((error ? folder : whole).filename().string());
}

/// The text of track `track`, from 1 on, or of the disc (0).
std::string textOf(const ddp::CheckedSet& set, disc::TextKind kind, size_t track) {
  return shownText(disc::fromLatin1(set.texts.text(kind, track)));
}

PageTrack trackOf(const ddp::CheckedSet& set, size_t t) {
  const ddp::SetTrack& from = set.layout.tracks[t];
  PageTrack track;
  track.number = static_cast<int>(t) + 1;
  track.mode = "AUDIO";
  track.title = textOf(set, disc::TextKind::kTitle, t + 1);
  track.performer = textOf(set, disc::TextKind::kPerformer, t + 1);
  track.isrc = shownText(from.isrc);
  track.flags = ddp::flagWords(from.flags);
  for (const ddp::IndexPoint& index : from.indices)
    track.indices.push_back({index.number, index.sector + kFirstSector});
  if (!set.layout_sound) return track;
  const int64_t start = from.at(1);
  if (from.at(0) >= 0) track.pause = start - from.at(0);
  int64_t end = set.layout.sectors;
  if (t + 1 < set.layout.tracks.size()) {
    const ddp::SetTrack& next = set.layout.tracks[t + 1];
    end = next.at(0) >= 0 ? next.at(0) : next.at(1);
  }
  track.place = {start + kFirstSector, end + kFirstSector};
  return track;
}

void takeAudio(const ddp::CheckedSet& set, PageDisc& disc, const Progress& progress) {
  if (set.audio_file.empty()) return;
  const check::ImageFile image(set.folder / set.audio_file, "BINARY");
  disc.images.push_back({image.path(), "BINARY", image.exists(),
                         image.readable() ? std::string() : image.problem(), image.bytes()});
  if (!image.readable()) return;
  disc.runs.push_back({0, 0, kFirstSector, image.sectors()});
  const int64_t all = std::max<int64_t>(image.dataBytes(), 1);
  const auto map =
      check::AudioMap::scan(image, [&](int64_t done) { progress(std::min(done, all), all); });
  addClipped(map, disc.runs.front(), disc);
}

}  // namespace

PageDisc discOfSet(const ddp::CheckedSet& set, const Progress& progress) {
  PageDisc disc;
  disc.name = nameOf(set.folder);
  disc.of_set = true;
  disc.title = textOf(set, disc::TextKind::kTitle, 0);
  disc.performer = textOf(set, disc::TextKind::kPerformer, 0);
  disc.catalogue = shownText(set.layout.catalogue);
  disc.master_id = shownText(set.identifier.master_id);
  const size_t tracks = std::min<size_t>(set.layout.tracks.size(), disc::kMostTracks);
  for (size_t t = 0; t < tracks; ++t) disc.tracks.push_back(trackOf(set, t));
  disc.tracks_left_out = set.layout.tracks.size() - tracks;
  disc.begin = kFirstSector;
  disc.end = set.layout.sectors + kFirstSector;
  disc.end_known = set.layout_sound;
  disc.findings = set.findings;
  takeAudio(set, disc, progress);
  return disc;
}

}  // namespace velmor::page
