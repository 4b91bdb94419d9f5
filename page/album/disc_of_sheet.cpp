#include "page/album/disc_of_sheet.h"

#include <algorithm>
#include <iterator>

#include "page/album/clipped_runs.h"
#include "page/album/shown_text.h"

namespace velmor::page {

namespace {

/// Indices of a track that are shown; their numbers go to 99.
constexpr size_t kMostIndices = 100;

std::string textOf(const std::optional<disc::Text>& text) {
  return text ? shownText(text->bytes) : std::string();
}

class Maker {
 public:
  explicit Maker(const check::Report& report) : m_from(report.disc) {
    m_made.name = shownText(report.sheet.filename().string());
  }

  PageDisc run() {
    takeDisc();
    takeImages();
    const size_t tracks = std::min<size_t>(m_from.sheet.tracks.size(), disc::kMostTracks);
    m_made.tracks_left_out = m_from.sheet.tracks.size() - tracks;
    for (size_t t = 0; t < tracks; ++t) takeTrack(t);
    for (size_t file = 0; file < m_from.images.size(); ++file) takeRuns(file);
    takeClipped();
    return std::move(m_made);
  }

 private:
  void takeDisc() {
    m_made.title = textOf(m_from.sheet.fields.title);
    m_made.performer = textOf(m_from.sheet.fields.performer);
    m_made.catalogue = textOf(m_from.sheet.catalog);
    m_made.end = m_from.length;
    m_made.end_known = m_from.length_known;
  }

  void takeImages() {
    for (size_t f = 0; f < m_from.images.size(); ++f) {
      const check::ImageFile& image = m_from.images[f];
      m_made.images.push_back({image.path(), m_from.sheet.files[f].type, image.exists(),
                               image.readable() ? std::string() : image.problem(), image.bytes()});
    }
  }

  void takeTrack(size_t t) {
    const disc::Track& from = m_from.sheet.tracks[t];
    PageTrack track;
    track.number = from.number >= 0 ? from.number : static_cast<int>(t) + 1;
    track.is_audio = from.isAudio();
    track.mode = shownText(from.mode);
    track.title = textOf(from.fields.title);
    track.performer = textOf(from.fields.performer);
    track.isrc = textOf(from.isrc);
    track.flags = textOf(from.flags);
    takeIndices(t, track);
    if (const int64_t* offset = offsetOf(t)) {
      const check::TrackPlace& place = *m_from.places[t];
      const int64_t end = std::max(place.own_end, place.start);
      if (place.end_known) track.place = {*offset + place.start, *offset + end};
    }
    m_made.tracks.push_back(std::move(track));
  }

  /// What turns sectors of track `t`'s image into sectors of the disc; null when it has no place.
  const int64_t* offsetOf(size_t t) {
    const auto& place = m_from.places[t];
    if (!place || place->file >= m_from.images.size()) return nullptr;
    m_offset = place->on_disc - place->start;
    return &m_offset;
  }

  /// Index 00 may stand in the image of the track before.
  std::optional<int64_t> onDisc(size_t t, const disc::Index& index) {
    if (!index.time.readable()) return std::nullopt;
    for (size_t earlier = t + 1; earlier-- > 0 && earlier + 2 > t;) {
      const int64_t* offset = offsetOf(earlier);
      if (offset && m_from.places[earlier]->file == index.file)
        return *offset + check::boundedSectors(index.time);
    }
    return std::nullopt;
  }

  void takeIndices(size_t t, PageTrack& track) {
    const disc::Track& from = m_from.sheet.tracks[t];
    for (const disc::Index& index : from.indices) {
      if (track.indices.size() == kMostIndices) break;
      if (const auto sector = onDisc(t, index)) track.indices.push_back({index.number, *sector});
    }
    const int64_t* offset = offsetOf(t);
    if (!offset) return;
    const int64_t start = m_from.places[t]->on_disc;
    // Every disc begins with a pause, which is track 1's and in no image.
    const bool has_pause = !track.indices.empty() && track.indices.front().number == 0;
    if (t == 0 && has_pause) track.indices.front().sector = kFirstSector;
    const int64_t pregap = from.pregap ? check::boundedSectors(*from.pregap) : int64_t{0};
    if (!has_pause && (t == 0 || pregap > 0))
      track.indices.insert(track.indices.begin(), {0, t == 0 ? kFirstSector : start - pregap});
    if (!track.indices.empty() && track.indices.front().number == 0)
      track.pause = std::max<int64_t>(start - track.indices.front().sector, 0);
  }

  /// Cuts an image where silence that the sheet asks for comes between its tracks.
  void takeRuns(size_t file) {
    if (!m_from.images[file].readable()) return;
    const int64_t sectors = m_from.images[file].sectors();
    std::optional<AudioRun> run;
    for (size_t t = 0; t < m_from.places.size(); ++t) {
      const int64_t* offset = offsetOf(t);
      if (!offset || m_from.places[t]->file != file) continue;
      const int64_t from = std::min(m_from.places[t]->gap_start, sectors);
      if (!run) run = AudioRun{file, 0, *offset, 0};
      if (run->at - run->first == *offset || from <= run->first) continue;
      run->sectors = from - run->first;
      addRun(*run);
      run = AudioRun{file, from, *offset + from, 0};
    }
    if (!run) return;
    run->sectors = sectors - run->first;
    addRun(*run);
  }

  void addRun(AudioRun run) {
    const int64_t free =
        m_made.runs.empty() ? run.at : m_made.runs.back().at + m_made.runs.back().sectors;
    // Times that descend would lay one stretch over another.
    if (run.sectors > 0 && run.at >= free) m_made.runs.push_back(run);
  }

  void takeClipped() {
    for (const AudioRun& run : m_made.runs) {
      const auto& map = m_from.audio[run.image];
      if (map) addClipped(*map, run, m_made);
    }
  }

  const check::Disc& m_from;
  PageDisc m_made;
  int64_t m_offset = 0;
};

}  // namespace

PageDisc discOfSheet(const check::Report& report) {
  PageDisc disc = Maker(report).run();
  addReport(report, disc);
  return disc;
}

void addReport(const check::Report& report, PageDisc& disc) {
  disc.sheet_read = true;
  std::copy(report.findings.begin(), report.findings.end(), std::back_inserter(disc.findings));
  std::stable_sort(disc.findings.begin(), disc.findings.end(),
                   [](const auto& a, const auto& b) { return a.severity < b.severity; });
}

}  // namespace velmor::page
